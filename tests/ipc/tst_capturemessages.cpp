#include "ipc/capturemessages.h"
#include "services/tracelog.h"
#include "support/fakeplatform.h"

#include <QtTest>

class Tst_CaptureMessages : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void numbersAreThoseOfTheCaptureProcess_data();
    void numbersAreThoseOfTheCaptureProcess();
    void postReachesTheCaptureProcess();
    void sendReachesTheCaptureProcess();
    void absentCaptureProcessIsSilent();
    void lookupAsksThePlatform();
    void eventsAreChattyLogLines();

private:
    static QString logText();

    FakePlatform *m_platform = nullptr;
};

void Tst_CaptureMessages::init() {
    m_platform = FakePlatform::install();
    QFile::remove(TraceLog::filePath());
}

void Tst_CaptureMessages::cleanup() {
    setTraceLevel(TraceLog::Off);
    Platform::setInstance(nullptr);
}

QString Tst_CaptureMessages::logText() {
    QFile log(TraceLog::filePath());
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
}

void Tst_CaptureMessages::numbersAreThoseOfTheCaptureProcess_data() {
    QTest::addColumn<quint32>("message");
    QTest::addColumn<quint32>("number");
    QTest::newRow("preferences opened") << quint32(CaptureMessage::PreferencesOpened) << 2149u;
    QTest::newRow("preferences closed") << quint32(CaptureMessage::PreferencesClosed) << 2150u;
    QTest::newRow("program ends") << quint32(CaptureMessage::ProgramEnds) << 2151u;
    QTest::newRow("new capture") << quint32(CaptureMessage::NewCapture) << 2152u;
    QTest::newRow("brought up") << quint32(CaptureMessage::BroughtUp) << 2153u;
    QTest::newRow("online update") << quint32(CaptureMessage::OnlineUpdate) << 2154u;
    QTest::newRow("hidden by close") << quint32(CaptureMessage::HiddenByClose) << 2155u;
    QTest::newRow("shown for a capture") << quint32(CaptureMessage::ShownForCapture) << 2156u;
    QTest::newRow("hidden") << quint32(CaptureMessage::Hidden) << 2157u;
    QTest::newRow("shown") << quint32(CaptureMessage::Shown) << 2158u;
    QTest::newRow("log target toggled") << quint32(CaptureMessage::LogTargetToggled) << 2159u;
    QTest::newRow("silent capture saved") << quint32(CaptureMessage::SilentCaptureSaved) << 2160u;
}

void Tst_CaptureMessages::numbersAreThoseOfTheCaptureProcess() {
    QFETCH(quint32, message);
    QFETCH(quint32, number);
    QCOMPARE(message, number);
}

void Tst_CaptureMessages::postReachesTheCaptureProcess() {
    QVERIFY(PostMessageToTindra(CaptureMessage::PreferencesClosed, 1, 3));
    const QVector<FakePlatform::Event> expected = {{0x866, 1, 3}};
    QVERIFY(m_platform->posted == expected);
}

void Tst_CaptureMessages::sendReachesTheCaptureProcess() {
    SendMessageToTindra(CaptureMessage::Hidden, 1, -1);
    const QVector<FakePlatform::Event> expected = {{0x86D, 1, -1}};
    QVERIFY(m_platform->posted == expected);
}

void Tst_CaptureMessages::absentCaptureProcessIsSilent() {
    setTraceLevel(2);
    m_platform->captureProcessPresent = false;
    QVERIFY(!PostMessageToTindra(CaptureMessage::NewCapture, 0, 0));
    QCOMPARE(SendMessageToTindra(CaptureMessage::NewCapture, 0, 0), qint64(0));
    QVERIFY(m_platform->posted.isEmpty());
    QCOMPARE(logText(), QString());
}

void Tst_CaptureMessages::lookupAsksThePlatform() {
    QVERIFY(findCaptureWindow());
    m_platform->captureProcessPresent = false;
    QVERIFY(!findCaptureWindow());
}

void Tst_CaptureMessages::eventsAreChattyLogLines() {
    setTraceLevel(1);
    PostMessageToTindra(CaptureMessage::Hidden, 1, 2);
    QCOMPARE(logText(), QString());
    setTraceLevel(2);
    PostMessageToTindra(CaptureMessage::Hidden, 1, 2);
    QVERIFY(logText().contains(QStringLiteral(" PostMessageToTindra : 2157 [1] [2]\r\n")));
    SendMessageToTindra(CaptureMessage::Shown, 0, 0);
    QVERIFY(logText().contains(QStringLiteral(" SendMessageToTindra : 2158 [0] [0]\r\n")));
}

QTEST_GUILESS_MAIN(Tst_CaptureMessages)
#include "tst_capturemessages.moc"
