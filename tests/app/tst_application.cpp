#include "app/application.h"
#include "app/tindraeditor.h"
#include "ipc/ipcclient.h"
#include "services/tracelog.h"
#include "support/fakeplatform.h"
#include "support/modalanswers.h"

#include <QScreen>
#include <QtTest>

#include <cstdio>

namespace {

/// Stands for whatever takes the toolkit's messages before the application is built.
void takeMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

class Tst_Application : public QObject {
    Q_OBJECT
public:
    Tst_Application(Application &application, FakePlatform &platform, QtMessageHandler messageHandler)
        : m_application(application), m_platform(platform), m_messageHandler(messageHandler) {}

private slots:
    void messagesGoWhereTheyWentBefore();
    void hasItsNameAndNoOrganisation();
    void announcesItsIdentity();
    void withoutTheTranslationTextsStayEnglish();
    void outlivesItsLastWindow();
    void windowsNeedNoGraphicsDriver();
    void oneLogicalPixelIsOneDevicePixel();
    void scaleFactorsBecomeDpi();
    void joinsArguments_data();
    void joinsArguments();
    void linesAreDroppedWithoutAWindow();
    void linesReachTheWindow();
    void linesOfTheSocketReachTheWindow();
    void lineOfTheSocketIsTreatedInsideADialog();
    void aWindowThatIsGoneIsNotReached();
    void requestToEndBecomesAKillLine();

private:
    Application &m_application;
    FakePlatform &m_platform;
    const QtMessageHandler m_messageHandler; // once the application stood
};

void Tst_Application::messagesGoWhereTheyWentBefore() {
    QVERIFY(m_messageHandler == takeMessage);
}

void Tst_Application::hasItsNameAndNoOrganisation() {
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Tindra"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral(PROJECT_VERSION));
    QCOMPARE(QCoreApplication::organizationName(), QString());
}

void Tst_Application::announcesItsIdentity() {
    QCOMPARE(m_platform.applicationId,
             QStringLiteral("{7C5A40EF-A0FB-4BFC-874A-C0F2E0B9FA8E}\\Norvane\\Tindra\\Tindra.exe"));
}

void Tst_Application::withoutTheTranslationTextsStayEnglish() {
    QVERIFY(!QFile::exists(QStringLiteral(":/TindraEditor_ko.qm")));
    QCOMPARE(QCoreApplication::translate("Toolbar", "save"), QStringLiteral("save"));
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Cancel"));
}

void Tst_Application::outlivesItsLastWindow() {
    QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
}

void Tst_Application::windowsNeedNoGraphicsDriver() {
    QWidget window;
    window.winId();
    QCOMPARE(window.windowHandle()->surfaceType(), QSurface::RasterSurface);
}

void Tst_Application::oneLogicalPixelIsOneDevicePixel() {
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    QCOMPARE(m_application.devicePixelRatio(), 1.0);
}

void Tst_Application::scaleFactorsBecomeDpi() {
    QCOMPARE(QGuiApplication::primaryScreen()->logicalDotsPerInch(), 192.0);
}

void Tst_Application::joinsArguments_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line");
    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("program alone") << QStringList{QStringLiteral("/bin/x")} << QStringLiteral("\"/bin/x\"");
    QTest::newRow("several") << QStringList{QStringLiteral("x"), QStringLiteral("/path"),
                                            QStringLiteral("a b.png")}
                             << QStringLiteral("\"x\" \"/path\" \"a b.png\"");
    QTest::newRow("empty") << QStringList{QStringLiteral("x"), QString()} << QStringLiteral("\"x\" \"\"");
    QTest::newRow("quote inside") << QStringList{QStringLiteral("x"), QStringLiteral("a\"b")}
                                  << QStringLiteral("\"x\" \"a\"b\"");
    QTest::newRow("backslash at the end")
        << QStringList{QStringLiteral("x"), QStringLiteral("a\\")} << QStringLiteral("\"x\" \"a\\\"");
}

void Tst_Application::joinsArguments() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);
    QCOMPARE(Application::joinedArguments(arguments), line);
}

void Tst_Application::linesAreDroppedWithoutAWindow() {
    TindraEditor editor;
    QSignalSpy lines(&editor, &TindraEditor::commandArrived);
    m_application.OnIpcMessage(QStringLiteral("x nothing"));
    QCOMPARE(lines.size(), 0);
}

void Tst_Application::linesReachTheWindow() {
    TindraEditor editor;
    QSignalSpy lines(&editor, &TindraEditor::commandArrived);
    m_application.setMainWindow(&editor);
    m_application.OnIpcMessage(QStringLiteral("x nothing"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().first().toString(), QStringLiteral("x nothing"));
}

void Tst_Application::linesOfTheSocketReachTheWindow() {
    TindraEditor editor;
    QSignalSpy lines(&editor, &TindraEditor::commandArrived);
    m_application.setMainWindow(&editor);
    QVERIFY(!IpcClient().Test(QStringLiteral("TNDEMutex")));
    setTraceLevel(1);
    QVERIFY(!m_application.checkRunningInstance());
    setTraceLevel(TraceLog::Off);
    QFile log(TraceLog::filePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(log.readAll()).contains(QStringLiteral("StartServer : " PROJECT_VERSION "\r")));
    IpcClient client;
    QVERIFY(client.Send(QStringLiteral("TNDEMutex"), QStringLiteral("x nothing")));
    QTRY_COMPARE(lines.size(), 1);
    QCOMPARE(lines.first().first().toString(), QStringLiteral("x nothing"));
}

void Tst_Application::lineOfTheSocketIsTreatedInsideADialog() {
    TindraEditor editor;
    QSignalSpy lines(&editor, &TindraEditor::commandArrived);
    m_application.setMainWindow(&editor);
    bool cameInside = false;
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        IpcClient client;
        QVERIFY(client.Send(QStringLiteral("TNDEMutex"), QStringLiteral("x /show")));
        // The outer one is told only when it has been treated.
        QTRY_COMPARE(lines.size(), 1);
        cameInside = dialog->isVisible() && editor.isVisible() && m_platform.postedMessages().contains(0x869);
        ModalAnswers::press(dialog, QStringLiteral("Ok"));
    });
    IpcClient outer;
    QVERIFY(outer.Send(QStringLiteral("TNDEMutex"), QStringLiteral("x /path /nothing.png")));
    QTRY_COMPARE(lines.size(), 2);
    QVERIFY(answers.isDone());
    QVERIFY(cameInside);
    QCOMPARE(lines.at(0).first().toString(), QStringLiteral("x /show"));
    QCOMPARE(lines.at(1).first().toString(), QStringLiteral("x /path /nothing.png"));
}

void Tst_Application::aWindowThatIsGoneIsNotReached() {
    {
        TindraEditor editor;
        m_application.setMainWindow(&editor);
    }
    m_application.OnIpcMessage(QStringLiteral("x nothing"));
    QVERIFY(m_platform.terminate);
    m_platform.terminate();
}

void Tst_Application::requestToEndBecomesAKillLine() {
    TindraEditor editor;
    QSignalSpy lines(&editor, &TindraEditor::commandArrived);
    m_application.setMainWindow(&editor);
    QVERIFY(m_platform.terminate);
    m_platform.terminate();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().first().toString(), QStringLiteral("/kill"));
}

int main(int argc, char **argv) {
    qputenv("QT_FONT_DPI", "96");
    qputenv("QT_SCALE_FACTOR", "2");
    FakePlatform *platform = FakePlatform::install();
    qInstallMessageHandler(takeMessage);
    Application application(argc, argv);
    // Seen here, because the test library puts its own in the place before the first test.
    const QtMessageHandler messageHandler = qInstallMessageHandler(nullptr);
    Tst_Application test(application, *platform, messageHandler);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
