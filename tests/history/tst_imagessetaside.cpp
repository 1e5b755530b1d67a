#include "canvas/editor.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/filesizelimit.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/session.h"

#include <QGraphicsSceneMouseEvent>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QRect CropRect(10, 6, 20, 16);

/// No two pixels next to each other are alike, so that what is cropped or drawn twice shows.
QImage pattern() {
    QImage image(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 6, y * 8, (x + y) % 2 * 255));
    }
    return image;
}

QByteArray bytesOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// While it lives there is no place for a work folder: none can be made in a file.
class NoWorkFolder {
public:
    explicit NoWorkFolder(const QString &file) {
        for (const char *name : {"XDG_DATA_HOME", "TMPDIR", "HOME"}) {
            m_values.append({name, qgetenv(name)});
            qputenv(name, QFile::encodeName(file));
        }
    }
    ~NoWorkFolder() {
        for (const auto &value : qAsConst(m_values))
            qputenv(value.first, value.second);
    }
    NoWorkFolder(const NoWorkFolder &) = delete;
    NoWorkFolder &operator=(const NoWorkFolder &) = delete;

private:
    QVector<QPair<const char *, QByteArray>> m_values;
};

} // namespace

/// Captures whose own file a save writes over.
class Tst_ImagesSetAside : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void captureGoesOnUntouched_data();
    void captureGoesOnUntouched();
    void everyRowOfTheFileGoesOn();
    void captureWithoutAFileDoesNotTakeTheSavedOne();
    void captureInMemoryDoesNotTakeAFileOfSomethingElse();
    void saveBesideLeavesTheFileToTheCapture();
    void failedWriteChangesNothing();
    void withoutAWorkFolderTheOriginalStaysInMemory();
    void withoutRoomInTheWorkFolderTheOriginalStaysInMemory();
    void failedWriteWithoutAWorkFolderForgetsTheCopy();
    void withoutAPlaceForTheOriginalNothingIsWritten();
    void rowThatGoesBehindTheWriteLeavesTheFile();

private:
    Editor *add(const QString &key) {
        [&] { QVERIFY(m_panel->addImage(key)); }();
        return list()->rowItem(0)->editor();
    }
    Editor *addFile(const QString &name) {
        [&] { QVERIFY(pattern().save(target(name), "PNG")); }();
        return add(target(name));
    }
    /// A translucent stroke across the crop.
    static void drawAndCrop(Editor *editor) {
        editor->setShape(Editor::Highlighter);
        const auto send = [editor](QEvent::Type type, const QPointF &pos) {
            QGraphicsSceneMouseEvent event(type);
            event.setScenePos(pos);
            event.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
            event.setButtons(Qt::LeftButton);
            QCoreApplication::sendEvent(editor, &event);
        };
        send(QEvent::GraphicsSceneMousePress, {12, 12});
        send(QEvent::GraphicsSceneMouseMove, {20, 14});
        send(QEvent::GraphicsSceneMouseMove, {26, 12});
        send(QEvent::GraphicsSceneMouseRelease, {26, 12});
        [&] {
            QVERIFY(editor->canUndo());
            QVERIFY(QMetaObject::invokeMethod(editor, "onCrop", Q_ARG(QRect, CropRect)));
        }();
    }
    /// As a visit to another capture does: the next one is read from its file.
    static void forgetShownImage() { ImageProvider::instance()->pixmap(Session::captureFile("other"_qs)); }
    static QStringList originals() { return QDir(workFolder()).entryList({"original-*"_qs}); }
    HistoryListWidget *list() const { return m_panel->findChild<HistoryListWidget *>(); }
    QString target(const QString &name) const { return m_target->filePath(name); }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
    std::unique_ptr<QTemporaryDir> m_target;
};

void Tst_ImagesSetAside::init() {
    m_session = std::make_unique<Session>();
    m_panel = std::make_unique<HistoryWidget>();
    m_target = std::make_unique<QTemporaryDir>();
}

void Tst_ImagesSetAside::cleanup() {
    m_panel.reset();
    m_session.reset();
}

void Tst_ImagesSetAside::captureGoesOnUntouched_data() {
    QTest::addColumn<QString>("capture");
    QTest::addColumn<QString>("saved");
    QTest::newRow("same path") << "shot.png"
                               << "shot.png";
    QTest::newRow("detour") << "shot.png"
                            << "folder/../shot.png";
    QTest::newRow("saved through a link") << "shot.png"
                                          << "link.png";
    QTest::newRow("captured through a link") << "link.png"
                                             << "shot.png";
    QTest::newRow("another format") << "shot.bmp"
                                    << "shot.bmp";
}

void Tst_ImagesSetAside::captureGoesOnUntouched() {
    QFETCH(QString, capture);
    QFETCH(QString, saved);
    const QString file = target(QFileInfo(capture).suffix() == "bmp"_qs ? "shot.bmp"_qs : "shot.png"_qs);
    QVERIFY(pattern().save(file));
    QVERIFY(QFile::link(file, target("link.png"_qs)));
    QVERIFY(QDir(m_target->path()).mkdir("folder"_qs));
    Editor *const editor = add(target(capture));
    drawAndCrop(editor);
    const QImage drawn = editor->flatten(true, false).toImage();
    QVERIFY(drawn != pattern().copy(CropRect));
    // What "save again" does, and a look at another capture before each.
    for (int i = 0; i < 2; ++i) {
        forgetShownImage();
        QVERIFY(editor->saveFlattened(target(saved), true, -1));
        forgetShownImage();
        COMPARE_IMAGES(QImage(file), drawn, "saved");
        COMPARE_IMAGES(editor->flatten(true, false).toImage(), drawn, "drawn");
        QCOMPARE(editor->imageRect(), pattern().rect());
        QCOMPARE(editor->visibleRect(), CropRect);
        QCOMPARE(editor->savedPath(), target(saved));
    }
    QCOMPARE(originals().size(), 1);
    const QString original = workFolder() + "/"_qs + originals().first();
    QCOMPARE(m_panel->imageFiles(), QStringList{original});
    QCOMPARE(int(QFile::permissions(original)) & 0x0077, 0);
    QVERIFY(original.endsWith(".png"_qs)); // which the next start looks for after a crash

    const QString pin = target("pin.png"_qs);
    QVERIFY(editor->savePinImage(pin));
    COMPARE_IMAGES(QImage(pin), pattern(), "pin");
    editor->undo();
    COMPARE_IMAGES(editor->flatten(true, false).toImage(), pattern().copy(CropRect), "undone");
    list()->removeItem(list()->rowItem(0), false, true);
    QVERIFY(!QFile::exists(original));
    COMPARE_IMAGES(QImage(file), drawn, "left");
}

void Tst_ImagesSetAside::everyRowOfTheFileGoesOn() {
    Editor *const first = addFile("shot.png"_qs);
    Editor *const second = add(target("./shot.png"_qs));
    Editor *const third = add(Session::captureFile("third"_qs, {7, 5}));
    QVERIFY(third->saveFlattened(target("shot.png"_qs), true, -1));
    QCOMPARE(QImage(target("shot.png"_qs)).size(), QSize(7, 5));
    QVERIFY(first->imageKey() != second->imageKey());
    for (Editor *editor : {first, second}) {
        COMPARE_IMAGES(editor->flatten(false, true).toImage(), pattern(), "kept");
        QVERIFY(!editor->isSaved());
    }
}

// Its picture came through memory, under a name that is a path; or the file was taken away.
void Tst_ImagesSetAside::captureWithoutAFileDoesNotTakeTheSavedOne() {
    const QString path = target("shot.png"_qs);
    QVERIFY(ImageProvider::instance()->insert(path, QPixmap::fromImage(pattern())));
    Editor *const editor = add(path);
    drawAndCrop(editor);
    QVERIFY(editor->saveFlattened(path, true, -1));
    forgetShownImage();
    COMPARE_IMAGES(editor->flatten(false, true).toImage(), pattern(), "kept");
    QCOMPARE(ImageProvider::instance()->usedMegabytes(), 0.0);
    list()->removeItem(list()->rowItem(0), false, true);
    QCOMPARE(QImage(path).size(), CropRect.size());
}

void Tst_ImagesSetAside::captureInMemoryDoesNotTakeAFileOfSomethingElse() {
    const QString path = target("shot.png"_qs);
    QVERIFY(ImageProvider::instance()->insert(path, QPixmap::fromImage(pattern())));
    QFile text(path);
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
    text.close();
    Editor *const editor = add(path);
    QVERIFY(editor->saveFlattened(path, true, -1));
    forgetShownImage();
    COMPARE_IMAGES(editor->flatten(false, true).toImage(), pattern(), "kept");
}

void Tst_ImagesSetAside::saveBesideLeavesTheFileToTheCapture() {
    Editor *const editor = addFile("shot.png"_qs);
    QVERIFY(editor->saveFlattened(target("saved.png"_qs), true, -1));
    QCOMPARE(editor->imageKey(), target("shot.png"_qs));
    QCOMPARE(originals(), QStringList());
}

void Tst_ImagesSetAside::failedWriteChangesNothing() {
    Editor *const editor = addFile("shot.xyz"_qs); // no format that could be written
    const QByteArray before = bytesOf(target("shot.xyz"_qs));
    QVERIFY(!editor->saveFlattened(target("shot.xyz"_qs), true, -1));
    QCOMPARE(bytesOf(target("shot.xyz"_qs)), before);
    QCOMPARE(editor->imageKey(), target("shot.xyz"_qs));
    QCOMPARE(originals(), QStringList());
}

void Tst_ImagesSetAside::withoutAWorkFolderTheOriginalStaysInMemory() {
    Editor *const editor = addFile("shot.png"_qs);
    drawAndCrop(editor);
    const QImage drawn = editor->flatten(true, false).toImage();
    const NoWorkFolder noFolder(target("shot.png"_qs));
    QCOMPARE(workFolder(), QString());
    QVERIFY(editor->saveFlattened(target("shot.png"_qs), true, -1));
    QVERIFY(editor->isSaved());
    forgetShownImage();
    COMPARE_IMAGES(QImage(target("shot.png"_qs)), drawn, "saved");
    COMPARE_IMAGES(editor->flatten(true, false).toImage(), drawn, "drawn");
    COMPARE_IMAGES(editor->flatten(false, true).toImage(), pattern(), "kept");
    QCOMPARE(m_panel->imageFiles(), QStringList());
    list()->removeItem(list()->rowItem(0), false, true);
    QCOMPARE(ImageProvider::instance()->usedMegabytes(), 0.0);
    QVERIFY(QFile::exists(target("shot.png"_qs)));
}

void Tst_ImagesSetAside::withoutRoomInTheWorkFolderTheOriginalStaysInMemory() {
    // Noise does not get smaller in a file.
    QImage noise(200, 200, QImage::Format_RGB32);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32 *>(noise.bits()), noise.width() * noise.height());
    QVERIFY(noise.save(target("shot.png"_qs)));
    QVERIFY(QFileInfo(target("shot.png"_qs)).size() > 100000);
    Editor *const editor = add(target("shot.png"_qs));
    drawAndCrop(editor);
    {
        const FileSizeLimit full(20000);
        QVERIFY(editor->saveFlattened(target("shot.png"_qs), true, -1));
    }
    forgetShownImage();
    QCOMPARE(QImage(target("shot.png"_qs)).size(), CropRect.size());
    COMPARE_IMAGES(editor->flatten(false, true).toImage(), noise, "kept");
    QCOMPARE(QDir(workFolder()).entryList({"*original*"_qs}, QDir::AllEntries | QDir::Hidden), QStringList());
}

void Tst_ImagesSetAside::failedWriteWithoutAWorkFolderForgetsTheCopy() {
    Editor *const editor = addFile("shot.xyz"_qs);
    const NoWorkFolder noFolder(target("shot.xyz"_qs));
    QVERIFY(!editor->saveFlattened(target("shot.xyz"_qs), true, -1));
    QCOMPARE(editor->imageKey(), target("shot.xyz"_qs));
    QCOMPARE(ImageProvider::instance()->usedMegabytes(), 0.0);
}

void Tst_ImagesSetAside::withoutAPlaceForTheOriginalNothingIsWritten() {
    // Less than a megabyte would count as nothing.
    QVERIFY(pattern().scaled(1024, 512).save(target("shot.png"_qs)));
    Editor *const editor = add(target("shot.png"_qs));
    const QByteArray before = bytesOf(target("shot.png"_qs));
    drawAndCrop(editor);
    // Many keys of one picture: each is counted, none takes memory of its own.
    const QPixmap large(2048, 1024);
    for (int i = 0; ImageProvider::instance()->insert("filler%1"_qs.arg(i), large); ++i)
        continue;
    const NoWorkFolder noFolder(target("shot.png"_qs));
    QVERIFY(!editor->saveFlattened(target("shot.png"_qs), true, -1));
    QVERIFY(!editor->isSaved());
    QCOMPARE(bytesOf(target("shot.png"_qs)), before);
    QCOMPARE(editor->imageKey(), target("shot.png"_qs));
}

// With the events behind the write, before the save has come back.
void Tst_ImagesSetAside::rowThatGoesBehindTheWriteLeavesTheFile() {
    Editor *const editor = addFile("shot.png"_qs);
    drawAndCrop(editor);
    QSize sizeAtTheTime;
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(0, this, [&] {
            sizeAtTheTime = QImage(target("shot.png"_qs)).size();
            list()->removeItem(list()->rowItem(0), false, true);
        });
    });
    QVERIFY(editor->saveFlattened(target("shot.png"_qs), true, -1));
    QCOMPARE(list()->count(), 0);
    QCOMPARE(sizeAtTheTime, CropRect.size());
    QCOMPARE(QImage(target("shot.png"_qs)).size(), CropRect.size());
    QCOMPARE(originals(), QStringList());
}

QTEST_MAIN(Tst_ImagesSetAside)
#include "tst_imagessetaside.moc"
