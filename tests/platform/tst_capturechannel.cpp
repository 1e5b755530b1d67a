#include "platform/capturechannel.h"
#include "platform/linux/linuxservices.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QThread>
#include <QtTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <mutex>

namespace {

constexpr QLatin1String captureService("com.norvane.Tindra.Capture");
constexpr QLatin1String captureObject("/com/norvane/Tindra/Capture");
/// Makes this program post one event and end.
constexpr QLatin1String postAndEnd("--post-and-end");

struct Event {
    quint32 message;
    quint64 wParam;
    qint64 lParam;
    bool operator==(const Event &o) const {
        return message == o.message && wParam == o.wParam && lParam == o.lParam;
    }
};

/// The capture process's end of the channel.
class CaptureService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.norvane.Tindra.Capture")
public:
    QVector<Event> events() const {
        const std::lock_guard<std::mutex> locker(m_mutex);
        return m_events;
    }

public slots:
    void Post(uint message, qulonglong wParam, qlonglong lParam) { record(message, wParam, lParam); }
    qlonglong Send(uint message, qulonglong wParam, qlonglong lParam) {
        record(message, wParam, lParam);
        return lParam - 1;
    }

private:
    void record(uint message, qulonglong wParam, qlonglong lParam) {
        const std::lock_guard<std::mutex> locker(m_mutex);
        m_events.append({message, wParam, lParam});
    }

    mutable std::mutex m_mutex; ///< not the toolkit's, which the thread sanitizer does not see into
    QVector<Event> m_events;
};

/// A capture process on a bus, answering from a thread of its own.
class RunningCapture {
public:
    explicit RunningCapture(const QString &address)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("capture"))) {
        m_service.moveToThread(&m_thread);
        m_thread.start();
        m_bus.registerObject(captureObject, &m_service, QDBusConnection::ExportAllSlots);
        m_registered = m_bus.registerService(captureService);
    }
    ~RunningCapture() {
        m_bus.unregisterService(captureService);
        m_bus.unregisterObject(captureObject);
        QDBusConnection::disconnectFromBus(QStringLiteral("capture"));
        m_thread.quit();
        m_thread.wait();
    }

    bool isRegistered() const { return m_registered; }
    QVector<Event> events() const { return m_service.events(); }

private:
    QThread m_thread;
    CaptureService m_service;
    QDBusConnection m_bus;
    bool m_registered = false;
};

} // namespace

/// Runs against a bus of its own, which each test may stop.
class Tst_CaptureChannel : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void withoutABusNothingIsTouched_data();
    void withoutABusNothingIsTouched();
    void absentCaptureProcessIsNotPresent();
    void absentCaptureProcessIsNotStarted();
    void postsEventsInOrder();
    void lastEventBeforeTheEndArrives();
    void sendBringsTheAnswer();
    void sendWithoutCaptureProcessGivesZero();
    void findsTheBusInTheRuntimeFolder();
    void seesTheCaptureProcessComeAndGo();
    void connectsAgainAfterTheBusWasRestarted();
    void silentBusHoldsNobodyUp();
    void busThatIsSilentFromTheStartHoldsNobodyUp_data();
    void busThatIsSilentFromTheStartHoldsNobodyUp();
    void addressesAreTriedInTurn_data();
    void addressesAreTriedInTurn();

private:
    QString file(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    bool startBus();
    void stopBus();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_bus;
    QString m_address;
    std::unique_ptr<CaptureChannel> m_channel;
};

void Tst_CaptureChannel::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    // A service file that leaves a trace when the bus starts the capture process on its own.
    QFile activation(file("com.norvane.Tindra.Capture.service"));
    QVERIFY(activation.open(QIODevice::WriteOnly));
    activation.write("[D-BUS Service]\nName=com.norvane.Tindra.Capture\nExec=/usr/bin/touch " +
                     QFile::encodeName(file("started")) + '\n');
    activation.close();
    QFile configuration(file("bus.conf"));
    QVERIFY(configuration.open(QIODevice::WriteOnly));
    const QByteArray name = QFile::encodeName(file("bus"));
    configuration.write("<busconfig><type>session</type><listen>unix:path=" + name +
                        "</listen><listen>unix:abstract=" + name + "</listen><servicedir>" +
                        QFile::encodeName(m_folder->path()) +
                        "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
                        "<allow receive_sender=\"*\"/>"
                        "<allow own=\"*\"/></policy></busconfig>");
    configuration.close();
    QVERIFY(startBus());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    m_channel = makeCaptureChannel();
}

void Tst_CaptureChannel::cleanup() {
    m_channel.reset();
    stopBus();
    m_folder.reset();
}

bool Tst_CaptureChannel::startBus() {
    QFile::remove(file("bus"));
    m_bus = std::make_unique<QProcess>();
    m_bus->start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                  QStringLiteral("--config-file=") + file("bus.conf")});
    if (!m_bus->waitForStarted() || !m_bus->waitForReadyRead())
        return false;
    // As sessions name it: without the id that a bus started anew would not have.
    m_address = QString::fromUtf8(m_bus->readLine()).section(QLatin1Char(','), 0, 0);
    return !m_address.isEmpty();
}

void Tst_CaptureChannel::stopBus() {
    if (!m_bus)
        return;
    m_bus->kill();
    m_bus->waitForFinished();
    m_bus.reset();
}

void Tst_CaptureChannel::withoutABusNothingIsTouched_data() {
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("no address") << QByteArray();
    QTest::newRow("a bus to be launched") << QByteArray("autolaunch:");
    QTest::newRow("one that is gone, then one to be launched")
        << QByteArray("unix:path=/nonexistent/bus;autolaunch:");
    QTest::newRow("a bus that is a program") << QByteArray("unixexec:path=/bin/true");
    QTest::newRow("nonsense") << QByteArray("unix:;unix:path=;=,;x");
}

void Tst_CaptureChannel::withoutABusNothingIsTouched() {
    QFETCH(QByteArray, address);
    if (address.isNull())
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    else
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    QVERIFY(!m_channel->isCaptureProcessPresent());
    QVERIFY(!m_channel->post(0x868, 0, 0));
    QCOMPARE(m_channel->send(0x868, 0, 0), qint64(0));
    // After an attempt the bus library would tell here why it failed.
    QCOMPARE(QDBusConnection(QStringLiteral("tindra-capture")).lastError().type(), QDBusError::Disconnected);
}

void Tst_CaptureChannel::absentCaptureProcessIsNotPresent() {
    QVERIFY(!m_channel->isCaptureProcessPresent());
}

void Tst_CaptureChannel::absentCaptureProcessIsNotStarted() {
    m_channel->isCaptureProcessPresent();
    m_channel->post(0x868, 0, 0);
    m_channel->send(0x868, 0, 0);
    QVERIFY(!QFile::exists(file("started")));
    // The trap works: a call that may start services springs it.
    QDBusConnection other = QDBusConnection::connectToBus(m_address, QStringLiteral("other"));
    QDBusMessage starting =
        QDBusMessage::createMethodCall(captureService, captureObject, captureService, QStringLiteral("Post"));
    other.send(starting);
    QTRY_VERIFY(QFile::exists(file("started")));
    QDBusConnection::disconnectFromBus(QStringLiteral("other"));
}

void Tst_CaptureChannel::postsEventsInOrder() {
    RunningCapture capture(m_address);
    QVERIFY(capture.isRegistered());
    QVERIFY(m_channel->isCaptureProcessPresent());
    QVERIFY(m_channel->post(0x866, 1, 3));
    QVERIFY(m_channel->post(0x86D, Q_UINT64_C(0xFFFFFFFFFFFFFFFF), -1));
    QVERIFY(m_channel->post(0x867, 0, std::numeric_limits<qint64>::min()));
    const QVector<Event> expected = {{0x866, 1, 3},
                                     {0x86D, Q_UINT64_C(0xFFFFFFFFFFFFFFFF), -1},
                                     {0x867, 0, std::numeric_limits<qint64>::min()}};
    QTRY_COMPARE(capture.events().size(), expected.size());
    QVERIFY(capture.events() == expected);
}

void Tst_CaptureChannel::lastEventBeforeTheEndArrives() {
    // The program's last event is posted right before it ends.
    RunningCapture capture(m_address);
    constexpr int count = 40;
    for (int i = 0; i < count; ++i)
        QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), {postAndEnd}), 0);
    QTRY_COMPARE(capture.events().size(), count);
}

void Tst_CaptureChannel::sendBringsTheAnswer() {
    RunningCapture capture(m_address);
    QCOMPARE(m_channel->send(0x868, 7, -41), qint64(-42));
    const QVector<Event> expected = {{0x868, 7, -41}};
    QVERIFY(capture.events() == expected);
}

void Tst_CaptureChannel::sendWithoutCaptureProcessGivesZero() {
    QCOMPARE(m_channel->send(0x868, 7, -41), qint64(0));
}

void Tst_CaptureChannel::findsTheBusInTheRuntimeFolder() {
    RunningCapture capture(m_address);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->path()));
    QVERIFY(m_channel->isCaptureProcessPresent());
}

void Tst_CaptureChannel::seesTheCaptureProcessComeAndGo() {
    QVERIFY(!m_channel->isCaptureProcessPresent());
    {
        RunningCapture capture(m_address);
        QVERIFY(m_channel->isCaptureProcessPresent());
    }
    QVERIFY(!m_channel->isCaptureProcessPresent());
}

void Tst_CaptureChannel::connectsAgainAfterTheBusWasRestarted() {
    {
        RunningCapture capture(m_address);
        QVERIFY(m_channel->isCaptureProcessPresent());
    }
    stopBus();
    QTRY_VERIFY(!QDBusConnection(QStringLiteral("tindra-capture")).isConnected());
    QVERIFY(!m_channel->isCaptureProcessPresent());
    QVERIFY(!m_channel->post(0x868, 0, 0));
    QVERIFY(startBus());
    RunningCapture capture(m_address);
    QVERIFY(m_channel->isCaptureProcessPresent());
}

void Tst_CaptureChannel::silentBusHoldsNobodyUp() {
    QVERIFY(!m_channel->isCaptureProcessPresent());
    QCOMPARE(::kill(pid_t(m_bus->processId()), SIGSTOP), 0);
    QElapsedTimer timer;
    timer.start();
    for (int event = 0; event < 20; ++event) {
        QVERIFY(!m_channel->isCaptureProcessPresent());
        QVERIFY(!m_channel->post(0x868, 0, 0));
    }
    const qint64 elapsed = timer.elapsed();
    ::kill(pid_t(m_bus->processId()), SIGCONT);
    // One wait for all of them, and a short one.
    QVERIFY2(elapsed < 2000, qPrintable(QString::number(elapsed)));
}

void Tst_CaptureChannel::busThatIsSilentFromTheStartHoldsNobodyUp_data() {
    QTest::addColumn<bool>("fullQueue");
    QTest::newRow("connects and is silent") << false;
    QTest::newRow("does not connect") << true;
}

void Tst_CaptureChannel::busThatIsSilentFromTheStartHoldsNobodyUp() {
    QFETCH(bool, fullQueue);
    const QTemporaryDir runtime;
    // Listens, and nobody is there to accept.
    const QString path = runtime.filePath(QStringLiteral("bus"));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    const auto *name = reinterpret_cast<const sockaddr *>(&address);
    const int silent = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QCOMPARE(::bind(silent, name, sizeof address), 0);
    QCOMPARE(::listen(silent, fullQueue ? 0 : 20), 0);
    QVector<int> waiting;
    while (fullQueue) {
        waiting.append(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (::connect(waiting.last(), name, sizeof address) != 0)
            break;
    }
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
    QElapsedTimer timer;
    timer.start();
    for (int event = 0; event < 20; ++event) {
        QVERIFY(!m_channel->isCaptureProcessPresent());
        QVERIFY(!m_channel->post(0x868, 0, 0));
    }
    const qint64 elapsed = timer.elapsed();
    for (const int descriptor : waiting)
        ::close(descriptor);
    ::close(silent);
    // One wait for all of them, and a short one.
    QVERIFY2(elapsed < 2000, qPrintable(QString::number(elapsed)));
}

void Tst_CaptureChannel::addressesAreTriedInTurn_data() {
    QTest::addColumn<QString>("pattern");
    QTest::newRow("behind one that is gone") << QStringLiteral("unix:path=/nonexistent/bus;ADDRESS");
    QTest::newRow("before one to be launched") << QStringLiteral("ADDRESS;autolaunch:");
    // Its socket would answer, but clients of the bus library cannot take an address in these words.
    QTest::newRow("behind one for servers") << QStringLiteral("unix:runtime=yes;ADDRESS");
    QTest::newRow("one without a file") << QStringLiteral("unix:abstract=NAME");
}

void Tst_CaptureChannel::addressesAreTriedInTurn() {
    QFETCH(QString, pattern);
    RunningCapture capture(m_address);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->path()));
    pattern.replace(QLatin1String("ADDRESS"), m_address).replace(QLatin1String("NAME"), file("bus"));
    qputenv("DBUS_SESSION_BUS_ADDRESS", pattern.toUtf8());
    QVERIFY(m_channel->isCaptureProcessPresent());
}

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(postAndEnd)) {
        const auto channel = makeCaptureChannel();
        QTimer::singleShot(0, &application, [&application, &channel] {
            const bool posted = channel->isCaptureProcessPresent() && channel->post(0x867, 0, 0);
            application.exit(posted ? 0 : 1);
        });
        return application.exec();
    }
    Tst_CaptureChannel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_capturechannel.moc"
