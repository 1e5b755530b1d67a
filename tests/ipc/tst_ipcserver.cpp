#include "ipc/ipcclient.h"
#include "ipc/ipcserver.h"
#include "ipc/rawsocket.h"
#include "ipc/stranger.h"
#include "platform/localserversocket.h"
#include "platform/namedlock.h"

#include <QLocalSocket>
#include <QtTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

const QString &serverName() {
    static const QString name = QStringLiteral("tst_ipcserver");
    return name;
}

QString socketPath() {
    return platform::localSocketPath(serverName());
}

/// "hi" as any capture side would write it.
QByteArray hiMessage() {
    return QByteArray::fromHex("0008 00000004 0068 0069");
}

} // namespace

class Tst_IpcServer : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void emptyNameIsRefused();
    void listensOnce();
    void deliversTexts_data();
    void deliversTexts();
    void dropsUnreadableMessages_data();
    void dropsUnreadableMessages();
    void laterPiecesAreNotAwaited();
    void clientThatClosedAtOnceIsReadAllTheSame();
    void probeIsDroppedWithoutWaiting();
    void silentClientHoldsUpOnlyForItsLimit();
    void oneMessageFromEachConnection();
    void severalClientsAreServedInTurn();
    void foreignProgramIsUnderstood();
    void strangersConnectionIsClosedUnread();
    void socketIsOfThisUserAlone();
    void socketOfADeadServerIsReplaced();
    void livingServerIsNotReplaced();
    void serverTooBusyToAnswerIsNotReplaced();
    void goesUnderTheElectionLock();
    void closedServerIsNone();
    void connectionIsClosedAfterItsMessage();
    void closedConnectionsAreForgotten();
    void listensAgainWhenDescriptorsRanOut();
    void runsWithoutASocketWhereStrangersCouldSit();

private:
    QStringList texts() const;

    std::unique_ptr<IpcServer> m_server;
    std::unique_ptr<QSignalSpy> m_messages;
};

void Tst_IpcServer::init() {
    m_server = std::make_unique<IpcServer>();
    m_messages = std::make_unique<QSignalSpy>(m_server.get(), &IpcServer::sig_ipcMessage);
}

void Tst_IpcServer::cleanup() {
    m_messages.reset();
    m_server.reset();
    QFile::remove(socketPath());
}

QStringList Tst_IpcServer::texts() const {
    QStringList result;
    for (const QList<QVariant> &arguments : qAsConst(*m_messages))
        result.append(arguments.first().toString());
    return result;
}

void Tst_IpcServer::emptyNameIsRefused() {
    QVERIFY(!m_server->Listen(QString()));
    QVERIFY(m_server->Listen(serverName()));
}

void Tst_IpcServer::listensOnce() {
    QVERIFY(m_server->Listen(serverName()));
    QVERIFY(!m_server->Listen(serverName()));
    QVERIFY(!m_server->Listen(serverName() + QLatin1Char('2')));
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("still here")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("still here")));
}

void Tst_IpcServer::deliversTexts_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("command line") << QStringLiteral("\"/usr/bin/tindra-editor\" \"/show\"");
    QTest::newRow("one character") << QStringLiteral("x");
    QTest::newRow("Hangul") << QString::fromUtf8("/path \"그림 1.png\"");
    QTest::newRow("longer than the length field") << QString(32768, QLatin1Char('a'));
}

void Tst_IpcServer::deliversTexts() {
    QFETCH(QString, text);
    QVERIFY(m_server->Listen(serverName()));
    IpcClient client;
    QVERIFY(client.Send(serverName(), text));
    QTRY_COMPARE(m_messages->size(), 1);
    QVERIFY(texts().first() == text);
}

void Tst_IpcServer::dropsUnreadableMessages_data() {
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("empty text") << QByteArray::fromHex("0004 00000000");
    QTest::newRow("null text") << QByteArray::fromHex("0004 ffffffff");
    QTest::newRow("one byte") << QByteArray::fromHex("00");
    QTest::newRow("length alone") << QByteArray::fromHex("0008");
    QTest::newRow("torn text") << QByteArray::fromHex("0008 00000004 0068");
    QTest::newRow("odd size") << QByteArray::fromHex("0007 00000003 006800");
    QTest::newRow("noise") << QByteArray("GET / HTTP/1.0\r\n\r\n");
}

void Tst_IpcServer::dropsUnreadableMessages() {
    QFETCH(QByteArray, sent);
    QVERIFY(m_server->Listen(serverName()));
    RawSocket client;
    QVERIFY(client.connectTo(socketPath()));
    QVERIFY(client.writeAll(sent));
    // The connection is closed, nothing is emitted, and the next message arrives.
    QTest::qWait(50);
    bool closed = false;
    QVERIFY(client.readToEnd(5000, &closed).isEmpty());
    QVERIFY(closed);
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("next")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("next")));
}

void Tst_IpcServer::laterPiecesAreNotAwaited() {
    QVERIFY(m_server->Listen(serverName()));
    RawSocket client;
    QVERIFY(client.connectTo(socketPath()));
    QVERIFY(client.writeAll(hiMessage().left(8)));
    std::thread writer([&client] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        client.writeAll(hiMessage().mid(8));
    });
    QTest::qWait(50); // the server reads in here
    writer.join();
    bool closed = false;
    client.readToEnd(5000, &closed);
    QVERIFY(closed);
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("next")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("next")));
}

void Tst_IpcServer::clientThatClosedAtOnceIsReadAllTheSame() {
    QVERIFY(m_server->Listen(serverName()));
    {
        RawSocket client;
        QVERIFY(client.connectTo(socketPath()));
        QVERIFY(client.writeAll(hiMessage()));
    }
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("hi")));
}

void Tst_IpcServer::probeIsDroppedWithoutWaiting() {
    QVERIFY(m_server->Listen(serverName()));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 10; ++i)
        QVERIFY(IpcClient().Test(serverName()));
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("after the probes")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("after the probes")));
    // Ten that were waited for would take ten seconds.
    QVERIFY(timer.elapsed() < 3000);
}

void Tst_IpcServer::silentClientHoldsUpOnlyForItsLimit() {
    QVERIFY(m_server->Listen(serverName()));
    RawSocket silent;
    QVERIFY(silent.connectTo(socketPath()));
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("after the silence")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("after the silence")));
    bool closed = false;
    silent.readToEnd(5000, &closed);
    QVERIFY(closed);
}

void Tst_IpcServer::oneMessageFromEachConnection() {
    QVERIFY(m_server->Listen(serverName()));
    RawSocket client;
    QVERIFY(client.connectTo(socketPath()));
    QVERIFY(client.writeAll(hiMessage() + hiMessage()));
    QTRY_COMPARE(m_messages->size(), 1);
    client.writeAll(hiMessage());
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("end")));
    QTRY_COMPARE(texts(), QStringList({QStringLiteral("hi"), QStringLiteral("end")}));
}

void Tst_IpcServer::severalClientsAreServedInTurn() {
    QVERIFY(m_server->Listen(serverName()));
    QStringList expected;
    std::vector<std::unique_ptr<IpcClient>> clients;
    for (int i = 0; i < 20; ++i) {
        expected.append(QStringLiteral("line %1").arg(i));
        clients.push_back(std::make_unique<IpcClient>());
        QVERIFY(clients.back()->Send(serverName(), expected.last()));
    }
    QTRY_COMPARE(texts(), expected);
}

void Tst_IpcServer::foreignProgramIsUnderstood() {
    QVERIFY(m_server->Listen(serverName()));
    const QString script = QStringLiteral("import socket, struct, sys\n"
                                          "text = '/path \\uadf8\\ub9bc.png /show'.encode('utf-16-be')\n"
                                          "s = socket.socket(socket.AF_UNIX)\n"
                                          "s.connect(sys.argv[1])\n"
                                          "s.sendall(struct.pack('>HI', len(text) + 4, len(text)) + text)\n");
    QProcess program;
    program.start(QStringLiteral("python3"), {QStringLiteral("-c"), script, socketPath()});
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, 20000);
    QCOMPARE(texts().first(), QString::fromUtf8("/path 그림.png /show"));
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitCode(), 0);
}

void Tst_IpcServer::strangersConnectionIsClosedUnread() {
    if (!Stranger::isPossible())
        QSKIP("only root can become another user");
    // Only by its working folder can the stranger reach the socket at all, and only once it is opened up.
    QTemporaryDir folder;
    QVERIFY(QDir::setCurrent(folder.path()));
    QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    const QString path = folder.filePath(QStringLiteral("socket"));
    QVERIFY(m_server->Listen(path));
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0777), 0);
    {
        Stranger stranger([] {
            RawSocket socket;
            if (!socket.connectTo(QStringLiteral("socket")))
                return 1;
            if (!socket.writeAll(hiMessage()))
                return 2;
            bool closed = false;
            socket.readToEnd(5000, &closed);
            return closed ? 0 : 3;
        });
        QTest::qWait(300);
        QCOMPARE(stranger.wait(), 0);
    }
    // The same message from this user comes through.
    RawSocket own;
    QVERIFY(own.connectTo(path));
    QVERIFY(own.writeAll(hiMessage()));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("hi")));
    QVERIFY(QDir::setCurrent(QStringLiteral("/")));
}

void Tst_IpcServer::socketIsOfThisUserAlone() {
    const mode_t mask = ::umask(0);
    QVERIFY(m_server->Listen(serverName()));
    ::umask(mask);
    struct stat info;
    QCOMPARE(::lstat(QFile::encodeName(socketPath()).constData(), &info), 0);
    QVERIFY(S_ISSOCK(info.st_mode));
    QCOMPARE(info.st_mode & (S_IRWXG | S_IRWXO), mode_t(0));
}

void Tst_IpcServer::socketOfADeadServerIsReplaced() {
    {
        RawSocket dead;
        QVERIFY(dead.bindAndListen(socketPath()));
    }
    QVERIFY(QFileInfo(socketPath()).exists() || QFileInfo(socketPath()).isSymLink());
    QVERIFY(!IpcClient().Test(serverName()));
    QVERIFY(m_server->Listen(serverName()));
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("hi")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("hi")));
}

void Tst_IpcServer::livingServerIsNotReplaced() {
    QVERIFY(m_server->Listen(serverName()));
    {
        IpcServer second;
        QVERIFY(!second.Listen(serverName()));
    }
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("hi")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("hi")));
}

void Tst_IpcServer::serverTooBusyToAnswerIsNotReplaced() {
    RawSocket busy;
    QVERIFY(busy.bindAndListen(socketPath(), 1));
    std::vector<std::unique_ptr<RawSocket>> queue;
    do {
        queue.push_back(std::make_unique<RawSocket>());
        QVERIFY(queue.size() < 100);
    } while (queue.back()->connectTo(socketPath()));
    QVERIFY(!m_server->Listen(serverName()));
    QVERIFY(QFile::exists(socketPath()));
}

void Tst_IpcServer::goesUnderTheElectionLock() {
    QVERIFY(m_server->Listen(serverName()));
    std::atomic<bool> locked{false};
    bool stoodWhileLocked = false;
    std::thread candidate([&] {
        platform::NamedLock election(serverName());
        locked = election.lock();
        QThread::msleep(200);
        stoodWhileLocked = QFileInfo::exists(socketPath());
    });
    while (!locked)
        QThread::msleep(1);
    m_server.reset();
    candidate.join();
    QVERIFY(stoodWhileLocked);
    QVERIFY(!QFileInfo::exists(socketPath()));
}

void Tst_IpcServer::closedServerIsNone() {
    QVERIFY(m_server->Listen(serverName()));
    m_server->Close();
    QVERIFY(!IpcClient().Send(serverName(), QStringLiteral("late")));
    QVERIFY(!QFileInfo::exists(socketPath()));
    // Its name is free for a successor, whom its end leaves alone.
    IpcServer successor;
    QVERIFY(successor.Listen(serverName()));
    m_server.reset();
    QVERIFY(IpcClient().Test(serverName()));
}

void Tst_IpcServer::connectionIsClosedAfterItsMessage() {
    QVERIFY(m_server->Listen(serverName()));
    RawSocket client;
    QVERIFY(client.connectTo(socketPath()));
    QVERIFY(client.writeAll(hiMessage()));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("hi")));
    bool closed = false;
    client.readToEnd(5000, &closed);
    QVERIFY(closed);
}

void Tst_IpcServer::closedConnectionsAreForgotten() {
    QVERIFY(m_server->Listen(serverName()));
    for (int i = 0; i < 3; ++i)
        QVERIFY(IpcClient().Send(serverName(), QStringLiteral("hi")));
    QTRY_COMPARE(m_messages->size(), 3);
    QTRY_VERIFY(m_server->findChildren<QLocalSocket *>().isEmpty());
}

void Tst_IpcServer::listensAgainWhenDescriptorsRanOut() {
    QVERIFY(m_server->Listen(serverName()));
    RawSocket client;
    struct rlimit usual;
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    struct rlimit none = usual;
    // The first number that is free is one too many.
    const int free = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::close(free);
    none.rlim_cur = rlim_t(free);
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool connected = client.connectTo(socketPath());
    QTest::qWait(100);
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &usual), 0);
    QVERIFY(connected);
    QTRY_VERIFY(IpcClient().Test(serverName()));
    QVERIFY(IpcClient().Send(serverName(), QStringLiteral("recovered")));
    QTRY_COMPARE(texts(), QStringList(QStringLiteral("recovered")));
}

void Tst_IpcServer::runsWithoutASocketWhereStrangersCouldSit() {
    const QByteArray session = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray temporary = qgetenv("TMPDIR");
    const QByteArray cache = qgetenv("XDG_CACHE_HOME");
    const QTemporaryDir open;
    QCOMPARE(::chmod(QFile::encodeName(open.path()).constData(), 0777), 0);
    qunsetenv("XDG_RUNTIME_DIR");
    qputenv("TMPDIR", QFile::encodeName(open.path()));
    qputenv("XDG_CACHE_HOME", "/dev/null/cache");
    const bool listens = m_server->Listen(serverName());
    const bool finds = IpcClient().Test(serverName());
    const QStringList left =
        QDir(open.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    qputenv("XDG_RUNTIME_DIR", session);
    qputenv("TMPDIR", temporary);
    qputenv("XDG_CACHE_HOME", cache);
    QVERIFY(!listens);
    QVERIFY(!finds);
    QCOMPARE(left, QStringList());
}

QTEST_GUILESS_MAIN(Tst_IpcServer)
#include "tst_ipcserver.moc"
