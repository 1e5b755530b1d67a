#include "canvas/editor.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/session.h"

#include <QGraphicsSceneMouseEvent>
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
    void saveBesideLeavesTheFileToTheCapture();
    void failedWriteChangesNothing();
    void withoutAPlaceForTheOriginalNothingIsWritten();

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
    QVERIFY(pattern().save(file, "PNG"));
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

void Tst_ImagesSetAside::withoutAPlaceForTheOriginalNothingIsWritten() {
    Editor *const editor = addFile("shot.png"_qs);
    const QByteArray before = bytesOf(target("shot.png"_qs));
    drawAndCrop(editor);
    const QByteArray names[] = {"XDG_DATA_HOME", "TMPDIR", "HOME"};
    QVector<QByteArray> values;
    for (const QByteArray &name : names) {
        values.append(qgetenv(name));
        qputenv(name, QFile::encodeName(target("shot.png"_qs))); // no folder can be made in a file
    }
    const QString folder = workFolder();
    const bool saved = editor->saveFlattened(target("shot.png"_qs), true, -1);
    for (int i = 0; i < values.size(); ++i)
        qputenv(names[i], values[i]);
    QCOMPARE(folder, QString());
    QVERIFY(!saved);
    QVERIFY(!editor->isSaved());
    QCOMPARE(bytesOf(target("shot.png"_qs)), before);
    QCOMPARE(editor->imageKey(), target("shot.png"_qs));
}

QTEST_MAIN(Tst_ImagesSetAside)
#include "tst_imagessetaside.moc"
