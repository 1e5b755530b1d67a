#include "support/imagecompare.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <xcb/xcb.h>

namespace {

const QString Copier = QStringLiteral(TINDRA_CLIPBOARD_COPIER);
const QString Editor = QStringLiteral(TINDRA_EDITOR);

/// An end of the program that asks a clipboard manager, which does not answer, takes this long.
constexpr int AskingMilliseconds = 5000;

QImage picture(int width, int height, int seed) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb((x * 3 + seed) % 256, (y * 5) % 256, (x + y * seed) % 256));
    }
    return image;
}

/// What another program gets when it pastes.
QByteArray pasted(const QString &target) {
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                          QStringLiteral("-o"), QStringLiteral("-t"), target});
    if (!xclip.waitForFinished(10000))
        xclip.kill();
    return xclip.readAllStandardOutput();
}

QImage pastedImage(const char *format) {
    return QImage::fromData(pasted(QStringLiteral("image/") + QLatin1String(format)), format);
}

/// Another program copies a text. It stays in the background to offer it.
void copyElsewhere(const QByteArray &text) {
    QProcess xclip;
    xclip.setStandardOutputFile(QProcess::nullDevice());
    xclip.setStandardErrorFile(QProcess::nullDevice());
    xclip.start(QStringLiteral("xclip"),
                {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")});
    xclip.write(text);
    xclip.closeWriteChannel();
    QVERIFY(xclip.waitForFinished());
}

/// The processes that keep the clipboard for our copier.
QList<qint64> keepers(const QString &program = Copier) {
    QList<qint64> found;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(entry));
        if (!commandLine.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> arguments = commandLine.readAll().split('\0');
        if (arguments.value(0) == program.toLocal8Bit() && arguments.value(1) == "--keep-clipboard")
            found.append(entry.toLongLong());
    }
    return found;
}

/// A clipboard manager that takes its role and answers only when it is told to.
class ClipboardManager {
public:
    ClipboardManager() : m_connection(xcb_connect(nullptr, nullptr)) {
        constexpr char name[] = "CLIPBOARD_MANAGER";
        const auto cookie = xcb_intern_atom(m_connection, 0, sizeof name - 1, name);
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_window_t window = xcb_generate_id(m_connection);
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(m_connection, window, reply->atom, XCB_CURRENT_TIME);
        const auto owner = xcb_get_selection_owner(m_connection, reply->atom);
        xcb_get_selection_owner_reply_t *ownerReply =
            xcb_get_selection_owner_reply(m_connection, owner, nullptr);
        m_inCharge = ownerReply && ownerReply->owner == window;
        free(ownerReply);
        free(reply);
    }
    ~ClipboardManager() {
        free(m_request);
        xcb_disconnect(m_connection);
    }
    bool inCharge() const { return m_inCharge; }
    /// Whether a program that ends has asked to take over what it holds. It waits for the answer.
    bool isAsked() {
        while (!m_request) {
            xcb_generic_event_t *event = xcb_poll_for_event(m_connection);
            if (!event)
                return false;
            if ((event->response_type & ~0x80) == XCB_SELECTION_REQUEST)
                m_request = reinterpret_cast<xcb_selection_request_event_t *>(event);
            else
                free(event);
        }
        return true;
    }
    void answer() {
        xcb_selection_notify_event_t notify = {};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.time = m_request->time;
        notify.requestor = m_request->requestor;
        notify.selection = m_request->selection;
        notify.target = m_request->target;
        notify.property = m_request->property;
        xcb_send_event(m_connection, 0, m_request->requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&notify));
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t *m_connection;
    bool m_inCharge = false;
    xcb_selection_request_event_t *m_request = nullptr;
};

} // namespace

class Tst_ClipboardKeeper : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();

    void otherProgramsPasteThePicture_data();
    void otherProgramsPasteThePicture();
    void transparencyIsPastedAsWhite();
    void pictureOutlivesItsProgram_data();
    void pictureOutlivesItsProgram();
    void killedInTheInstantOfTheCopy();
    void nextCopyEndsTheKeeper();
    void atMostOneKeeperWithTheLastPicture();
    void copyRightAfterOursStays();
    void longIdleProgramMayCopy();
    void exitDoesNotWaitForAClipboardManager();
    void exitDoesNotWaitOnceTheKeeperHasTakenOver();
    void textCopiedAfterThePictureIsHandedOver();
    void pictureWithoutAKeeperIsHandedOver();
    void keeperHoldsNothingOfItsProgram();
    void editorKeepsThePicture();
    void editorHasTheKeeperMode_data();
    void editorHasTheKeeperMode();

private:
    QString save(const QImage &image, const QString &name) const;
    void copy(const QString &mode, const QStringList &images);

    QTemporaryDir m_folder;
    QProcess m_copier;
    QString m_imagePath;
    QImage m_image = picture(321, 123, 7);
};

void Tst_ClipboardKeeper::initTestCase() {
    m_imagePath = save(m_image, QStringLiteral("picture.png"));
}

void Tst_ClipboardKeeper::cleanup() {
    m_copier.kill();
    m_copier.waitForFinished();
    copyElsewhere("nothing");
    QTRY_VERIFY(keepers().isEmpty());
}

QString Tst_ClipboardKeeper::save(const QImage &image, const QString &name) const {
    const QString path = m_folder.filePath(name);
    return image.save(path) ? path : QString();
}

void Tst_ClipboardKeeper::copy(const QString &mode, const QStringList &images) {
    m_copier.start(Copier, QStringList{mode} + images);
    QVERIFY(m_copier.waitForReadyRead());
    QCOMPARE(m_copier.readAllStandardOutput().trimmed(), QByteArray("copied"));
}

void Tst_ClipboardKeeper::otherProgramsPasteThePicture_data() {
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("png") << QByteArray("png");
    QTest::newRow("bmp") << QByteArray("bmp");
    QTest::newRow("ppm") << QByteArray("ppm");
}

void Tst_ClipboardKeeper::otherProgramsPasteThePicture() {
    QFETCH(QByteArray, format);
    copy(QStringLiteral("stay"), {m_imagePath});
    COMPARE_IMAGES(pastedImage(format.constData()), m_image, "at once");
    QTRY_COMPARE(keepers().size(), 1);
    COMPARE_IMAGES(pastedImage(format.constData()), m_image, "later");
}

void Tst_ClipboardKeeper::transparencyIsPastedAsWhite() {
    QImage source(3, 1, QImage::Format_ARGB32);
    source.setPixelColor(0, 0, QColor(0, 0, 0, 0));
    source.setPixelColor(1, 0, QColor(255, 0, 0, 255));
    source.setPixelColor(2, 0, QColor(0, 0, 0, 51)); // a fifth of black over white
    QImage expected(3, 1, QImage::Format_RGB32);
    expected.setPixel(0, 0, qRgb(255, 255, 255));
    expected.setPixel(1, 0, qRgb(255, 0, 0));
    expected.setPixel(2, 0, qRgb(204, 204, 204));
    copy(QStringLiteral("quit"), {save(source, QStringLiteral("transparent.png"))});
    QVERIFY(m_copier.waitForFinished());
    QTRY_COMPARE(pastedImage("png").size(), source.size());
    COMPARE_IMAGES(pastedImage("png"), expected, "png");
    COMPARE_IMAGES(pastedImage("bmp"), expected, "bmp");
}

void Tst_ClipboardKeeper::pictureOutlivesItsProgram_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("killed");
    QTest::newRow("killed") << QSize(321, 123) << true;
    QTest::newRow("ended by itself") << QSize(321, 123) << false;
    QTest::newRow("large") << QSize(3000, 2001) << true;
    QTest::newRow("one pixel") << QSize(1, 1) << true;
}

void Tst_ClipboardKeeper::pictureOutlivesItsProgram() {
    QFETCH(QSize, size);
    QFETCH(bool, killed);
    const QImage image = picture(size.width(), size.height(), 3);
    copy(killed ? QStringLiteral("stay") : QStringLiteral("quit"),
         {save(image, QStringLiteral("other.png"))});
    QTRY_COMPARE(keepers().size(), 1);
    if (killed) {
        QTest::qWait(300);
        m_copier.kill();
    }
    QVERIFY(m_copier.waitForFinished());
    QTRY_COMPARE(pastedImage("png").size(), size);
    COMPARE_IMAGES(pastedImage("png"), image, "png");
    COMPARE_IMAGES(pastedImage("bmp"), image, "bmp");
}

void Tst_ClipboardKeeper::killedInTheInstantOfTheCopy() {
    copy(QStringLiteral("stay"), {m_imagePath});
    m_copier.kill();
    QVERIFY(m_copier.waitForFinished());
    QTRY_COMPARE(pastedImage("png").size(), m_image.size());
    COMPARE_IMAGES(pastedImage("png"), m_image, "png");
}

void Tst_ClipboardKeeper::nextCopyEndsTheKeeper() {
    copy(QStringLiteral("quit"), {m_imagePath});
    QTRY_COMPARE(pastedImage("png").size(), m_image.size());
    QCOMPARE(keepers().size(), 1);
    copyElsewhere("a text");
    QTRY_COMPARE(keepers().size(), 0);
    QCOMPARE(pasted(QStringLiteral("STRING")), QByteArray("a text"));
}

void Tst_ClipboardKeeper::atMostOneKeeperWithTheLastPicture() {
    const QImage last = picture(50, 60, 11);
    const QString lastPath = save(last, QStringLiteral("last.png"));
    copy(QStringLiteral("stay"), {m_imagePath, m_imagePath, m_imagePath, lastPath});
    COMPARE_IMAGES(pastedImage("png"), last, "at once");
    // The keepers of the first pictures come up, find a newer copy and go.
    QTest::qWait(700);
    QTRY_COMPARE(keepers().size(), 1);
    m_copier.kill();
    QVERIFY(m_copier.waitForFinished());
    COMPARE_IMAGES(pastedImage("png"), last, "later");
}

void Tst_ClipboardKeeper::copyRightAfterOursStays() {
    copy(QStringLiteral("stay"), {m_imagePath});
    copyElsewhere("newer");
    QTest::qWait(500);
    QTRY_COMPARE(keepers().size(), 0);
    QCOMPARE(pasted(QStringLiteral("STRING")), QByteArray("newer"));
}

void Tst_ClipboardKeeper::longIdleProgramMayCopy() {
    // The copier has not seen one event of the user, the other program has copied just now.
    copyElsewhere("older");
    copy(QStringLiteral("stay"), {m_imagePath});
    COMPARE_IMAGES(pastedImage("png"), m_image, "png");
}

void Tst_ClipboardKeeper::exitDoesNotWaitForAClipboardManager() {
    ClipboardManager manager;
    QVERIFY(manager.inCharge());
    copy(QStringLiteral("quit"), {m_imagePath});
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_copier.waitForFinished(20000));
    QVERIFY2(timer.elapsed() < AskingMilliseconds, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!manager.isAsked());
    QTRY_COMPARE(pastedImage("png").size(), m_image.size());
}

void Tst_ClipboardKeeper::exitDoesNotWaitOnceTheKeeperHasTakenOver() {
    const ClipboardManager manager;
    copy(QStringLiteral("stay"), {m_imagePath});
    QTRY_COMPARE(keepers().size(), 1);
    QTest::qWait(500);
    // The keeper itself has to end at once, too, when somebody else copies.
    copyElsewhere("a text");
    QTRY_VERIFY_WITH_TIMEOUT(keepers().isEmpty(), AskingMilliseconds);
}

void Tst_ClipboardKeeper::textCopiedAfterThePictureIsHandedOver() {
    ClipboardManager manager;
    copy(QStringLiteral("text"), {m_imagePath});
    QTRY_VERIFY(manager.isAsked());
    QCOMPARE(pasted(QStringLiteral("UTF8_STRING")), QByteArray("typed"));
    manager.answer();
    QVERIFY(m_copier.waitForFinished());
}

void Tst_ClipboardKeeper::pictureWithoutAKeeperIsHandedOver() {
    ClipboardManager manager;
    qputenv("TINDRA_TEST_KEEPER", "/no/such/program");
    copy(QStringLiteral("quit"), {m_imagePath});
    qunsetenv("TINDRA_TEST_KEEPER");
    QTRY_VERIFY(manager.isAsked());
    COMPARE_IMAGES(pastedImage("png"), m_image, "png");
    manager.answer();
    QVERIFY(m_copier.waitForFinished());
}

void Tst_ClipboardKeeper::keeperHoldsNothingOfItsProgram() {
    copy(QStringLiteral("quit"), {m_imagePath});
    // Whoever waits for the end of the program's output gets it.
    QVERIFY(m_copier.waitForFinished(5000));
    QTRY_COMPARE(keepers().size(), 1);
    QTRY_COMPARE(pastedImage("png").size(), m_image.size());
    const QString process = QStringLiteral("/proc/%1/").arg(keepers().first());
    for (const QFileInfo &descriptor :
         QDir(process + QStringLiteral("fd")).entryInfoList(QDir::Files | QDir::System))
        QVERIFY2(!descriptor.symLinkTarget().endsWith(QLatin1String("a-lock")),
                 qPrintable(descriptor.path()));
    QCOMPARE(QFileInfo(process + QStringLiteral("cwd")).symLinkTarget(), QStringLiteral("/"));
}

void Tst_ClipboardKeeper::editorKeepsThePicture() {
    qputenv("TINDRA_TEST_KEEPER", Editor.toLocal8Bit());
    copy(QStringLiteral("quit"), {m_imagePath});
    qunsetenv("TINDRA_TEST_KEEPER");
    QTRY_COMPARE(keepers(Editor).size(), 1);
    QTRY_COMPARE(pastedImage("png").size(), m_image.size());
    COMPARE_IMAGES(pastedImage("png"), m_image, "png");
    copyElsewhere("a text");
    QTRY_VERIFY(keepers(Editor).isEmpty());
}

void Tst_ClipboardKeeper::editorHasTheKeeperMode_data() {
    QTest::addColumn<QByteArray>("input");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no image") << QByteArray(100, 'x');
}

void Tst_ClipboardKeeper::editorHasTheKeeperMode() {
    QFETCH(QByteArray, input);
    QFile file(m_folder.filePath(QStringLiteral("input")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(input);
    file.close();
    const QDir runtimeFolder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    const QStringList before = runtimeFolder.entryList(QDir::AllEntries | QDir::System);
    QProcess editor;
    editor.setStandardInputFile(file.fileName());
    editor.start(Editor, {QStringLiteral("--keep-clipboard")});
    QVERIFY(editor.waitForFinished(10000));
    QCOMPARE(editor.exitStatus(), QProcess::NormalExit);
    QCOMPARE(editor.exitCode(), 1);
    // No socket, no lock: nothing of the editor itself has begun.
    QCOMPARE(runtimeFolder.entryList(QDir::AllEntries | QDir::System), before);
}

QTEST_GUILESS_MAIN(Tst_ClipboardKeeper)
#include "tst_clipboardkeeper.moc"
