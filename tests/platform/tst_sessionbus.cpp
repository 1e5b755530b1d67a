#include "platform/filemanager.h"
#include "platform/linux/linuxservices.h"
#include "platform/linux/sessionbus.h"

#include <QtTest>

#include <csignal>

namespace {

const QString One = QStringLiteral("tst-one");
const QString Other = QStringLiteral("tst-other");
const QString Question = QStringLiteral("GetId");

} // namespace

/// Runs against a bus of its own, which a test may stop.
class Tst_SessionBus : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void busAnswers();
    void silenceOnOneConnectionSparesTheOthers();
    void silentBusHoldsNoFileManagerUp();

private:
    void stop() const { QCOMPARE(::kill(pid_t(m_bus.processId()), SIGSTOP), 0); }
    static bool isAnswered(const QString &name) {
        return sessionbus::ask(name, Question).type() == QDBusMessage::ReplyMessage;
    }

    QProcess m_bus;
};

void Tst_SessionBus::init() {
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    QVERIFY(m_bus.waitForStarted() && m_bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

void Tst_SessionBus::cleanup() {
    QDBusConnection::disconnectFromBus(One);
    QDBusConnection::disconnectFromBus(Other);
    m_bus.kill();
    m_bus.waitForFinished();
}

void Tst_SessionBus::busAnswers() {
    QVERIFY(sessionbus::connection(One).isConnected());
    QVERIFY(isAnswered(One));
    QVERIFY(isAnswered(One));
}

void Tst_SessionBus::silenceOnOneConnectionSparesTheOthers() {
    QVERIFY(isAnswered(One));
    QVERIFY(isAnswered(Other));
    stop();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!isAnswered(One));
    for (int question = 0; question < 20; ++question) {
        QVERIFY(!isAnswered(Other));
        QVERIFY(!sessionbus::connection(Other).isConnected());
    }
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed < 2000, qPrintable(QString::number(elapsed)));
}

void Tst_SessionBus::silentBusHoldsNoFileManagerUp() {
    const std::unique_ptr<FileManager> manager = makeFileManager();
    const QString path = QStringLiteral("/nonexistent/shot.png");
    QVERIFY(!manager->showFile(path));
    QVERIFY(QDBusConnection(QStringLiteral("tindra-filemanager")).isConnected());
    stop();
    QElapsedTimer timer;
    timer.start();
    for (int file = 0; file < 20; ++file)
        QVERIFY(!manager->showFile(path));
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed < 2000, qPrintable(QString::number(elapsed)));
}

QTEST_GUILESS_MAIN(Tst_SessionBus)
#include "tst_sessionbus.moc"
