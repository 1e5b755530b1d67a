#include "ipc/ipcsocket.h"
#include "ipc/rawsocket.h"
#include "ipc/stranger.h"
#include "platform/localserversocket.h"
#include "services/tracelog.h"

#include <QLocalServer>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString &serverName() {
    static const QString name = QStringLiteral("tst_ipcsocket");
    return name;
}

QByteArray bytes(const char *hex) {
    return QByteArray::fromHex(hex);
}

QString logText() {
    QFile log(TraceLog::filePath());
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
}

} // namespace

class Tst_IpcSocket : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void writesTheseBytes_data();
    void writesTheseBytes();
    void lengthFieldWraps_data();
    void lengthFieldWraps();
    void readsTheseBytes_data();
    void readsTheseBytes();
    void laterPiecesAreNotAwaited();
    void readsWhatHasArrivedAlready();
    void waitsOneSecondForAMessage_data();
    void waitsOneSecondForAMessage();
    void closedConnectionIsNotWaitedFor();
    void writingWithoutConnectionFails();
    void connectingTwiceStartsAfresh();
    void missingServerIsNoConnection();
    void strangersServerIsNoConnection();
    void errorsAreLogged();

private:
    /// A connected pair: our socket, and the other end as the plain server sees it.
    QLocalSocket *connectPair(IpcSocket &socket);

    std::unique_ptr<QLocalServer> m_server;
};

void Tst_IpcSocket::init() {
    m_server = std::make_unique<QLocalServer>();
    QVERIFY2(m_server->listen(platform::localSocketPath(serverName())), qPrintable(m_server->errorString()));
}

void Tst_IpcSocket::cleanup() {
    m_server.reset();
}

QLocalSocket *Tst_IpcSocket::connectPair(IpcSocket &socket) {
    if (!socket.ConnectToServer(serverName()) || !m_server->waitForNewConnection(5000))
        return nullptr;
    return m_server->nextPendingConnection();
}

void Tst_IpcSocket::writesTheseBytes_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("two letters") << QStringLiteral("hi") << bytes("0008 00000004 0068 0069");
    QTest::newRow("command") << QStringLiteral("/show") << bytes("000e 0000000a 002f 0073 0068 006f 0077");
    QTest::newRow("Hangul") << QString::fromUtf8("가") << bytes("0006 00000002 ac00");
    QTest::newRow("beyond the first plane") << QString::fromUtf8("😀") << bytes("0008 00000004 d83d de00");
    QTest::newRow("empty") << QStringLiteral("") << bytes("0004 00000000");
    QTest::newRow("null") << QString() << bytes("0004 ffffffff");
}

void Tst_IpcSocket::writesTheseBytes() {
    QFETCH(QString, text);
    QFETCH(QByteArray, expected);
    IpcSocket socket;
    QLocalSocket *other = connectPair(socket);
    QVERIFY(other);
    QVERIFY(socket.WriteMessage(text));
    QTRY_COMPARE(other->bytesAvailable(), qint64(expected.size()));
    QCOMPARE(other->readAll().toHex(), expected.toHex());
}

void Tst_IpcSocket::lengthFieldWraps_data() {
    QTest::addColumn<int>("units");
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("last that fits") << 32765 << bytes("fffe 0000fffa");
    QTest::newRow("first that wraps") << 32766 << bytes("0000 0000fffc");
    QTest::newRow("32768") << 32768 << bytes("0004 00010000");
}

void Tst_IpcSocket::lengthFieldWraps() {
    QFETCH(int, units);
    QFETCH(QByteArray, head);
    const QString text(units, QLatin1Char('a'));
    IpcSocket socket;
    QLocalSocket *other = connectPair(socket);
    QVERIFY(other);
    QVERIFY(socket.WriteMessage(text));
    QTRY_COMPARE(other->bytesAvailable(), qint64(6 + 2 * units));
    QCOMPARE(other->peek(6).toHex(), head.toHex());
    // The reader goes by the size of the text alone.
    QString read;
    QVERIFY(IpcSocket::ReadMessage(*other, read));
    QVERIFY(read == text);
}

void Tst_IpcSocket::readsTheseBytes_data() {
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<QString>("expected");
    const QString kept = QStringLiteral("before");
    QTest::newRow("message") << bytes("0008 00000004 0068 0069") << true << QStringLiteral("hi");
    QTest::newRow("wrong length") << bytes("1234 00000004 0068 0069") << true << QStringLiteral("hi");
    QTest::newRow("more than one message")
        << bytes("0008 00000004 0068 0069 0006 00000002 0041") << true << QStringLiteral("hi");
    QTest::newRow("empty text") << bytes("0004 00000000") << true << QString();
    QTest::newRow("null text") << bytes("0004 ffffffff") << true << QString();
    QTest::newRow("one byte") << bytes("00") << false << kept;
    QTest::newRow("length alone") << bytes("0008") << false << kept;
    QTest::newRow("torn size") << bytes("0008 0000") << true << QString();
    QTest::newRow("size alone") << bytes("0008 00000004") << true << QString();
    QTest::newRow("torn text") << bytes("0008 00000004 0068") << true << QString();
    QTest::newRow("torn unit") << bytes("0008 00000004 0068 00") << true << QString();
    QTest::newRow("odd size") << bytes("0007 00000003 0068 0069") << true << QString();
    QTest::newRow("size that claims 4 GB") << bytes("0008 fffffffe 0068 0069") << true << QString();
}

void Tst_IpcSocket::readsTheseBytes() {
    QFETCH(QByteArray, sent);
    QFETCH(bool, readable);
    QFETCH(QString, expected);
    IpcSocket socket;
    QLocalSocket *other = connectPair(socket);
    QVERIFY(other);
    other->write(sent);
    QVERIFY(other->waitForBytesWritten(5000));
    QString text = QStringLiteral("before");
    QCOMPARE(socket.ReadMessage(text), readable);
    QCOMPARE(text, expected);
}

void Tst_IpcSocket::laterPiecesAreNotAwaited() {
    RawSocket client;
    QVERIFY(client.connectTo(platform::localSocketPath(serverName())));
    QVERIFY(m_server->waitForNewConnection(5000));
    QLocalSocket *accepted = m_server->nextPendingConnection();
    QVERIFY(accepted);
    QVERIFY(client.writeAll(bytes("0008 00000004 0068")));
    const std::unique_ptr<QThread> writer(QThread::create([&client] {
        QThread::msleep(300);
        client.writeAll(bytes("0069"));
    }));
    writer->start();
    QString text = QStringLiteral("before");
    const bool isRead = IpcSocket::ReadMessage(*accepted, text);
    writer->wait();
    QVERIFY(isRead);
    QCOMPARE(text, QString());
}

void Tst_IpcSocket::readsWhatHasArrivedAlready() {
    IpcSocket socket;
    QLocalSocket *other = connectPair(socket);
    QVERIFY(other);
    other->write(bytes("0008 00000004 0068 0069"));
    QTRY_COMPARE(socket.bytesAvailable(), qint64(10));
    QString text;
    QVERIFY(socket.ReadMessage(text));
    QCOMPARE(text, QStringLiteral("hi"));
}

void Tst_IpcSocket::waitsOneSecondForAMessage_data() {
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("readable");
    QTest::newRow("well within the limit") << 600 << true;
    QTest::newRow("well beyond it") << 1600 << false;
}

void Tst_IpcSocket::waitsOneSecondForAMessage() {
    QFETCH(int, delay);
    QFETCH(bool, readable);
    RawSocket client;
    QVERIFY(client.connectTo(platform::localSocketPath(serverName())));
    QVERIFY(m_server->waitForNewConnection(5000));
    QLocalSocket *accepted = m_server->nextPendingConnection();
    QVERIFY(accepted);
    const std::unique_ptr<QThread> writer(QThread::create([&client, delay] {
        QThread::msleep(static_cast<unsigned long>(delay));
        client.writeAll(bytes("0008 00000004 0068 0069"));
    }));
    writer->start();
    QString text;
    const bool isRead = IpcSocket::ReadMessage(*accepted, text);
    writer->wait();
    QCOMPARE(isRead, readable);
    QCOMPARE(text, readable ? QStringLiteral("hi") : QString());
}

void Tst_IpcSocket::closedConnectionIsNotWaitedFor() {
    // One that waits takes the whole limit for a silent connection each time; a busy machine holds up some.
    constexpr qint64 SilenceMilliseconds = 1000;
    qint64 shortest = SilenceMilliseconds;
    for (int attempt = 0; attempt < 5; ++attempt) {
        IpcSocket socket;
        QLocalSocket *other = connectPair(socket);
        QVERIFY(other);
        delete other;
        QElapsedTimer timer;
        timer.start();
        QString text;
        QVERIFY(!socket.ReadMessage(text));
        shortest = qMin(shortest, timer.elapsed());
    }
    QVERIFY2(shortest < SilenceMilliseconds, qPrintable(QString::number(shortest)));
}

void Tst_IpcSocket::writingWithoutConnectionFails() {
    IpcSocket socket;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("device not open")));
    QVERIFY(!socket.WriteMessage(QStringLiteral("hi")));
}

void Tst_IpcSocket::connectingTwiceStartsAfresh() {
    IpcSocket socket;
    QLocalSocket *first = connectPair(socket);
    QVERIFY(first);
    QLocalSocket *second = connectPair(socket);
    QVERIFY(second);
    QTRY_COMPARE(first->state(), QLocalSocket::UnconnectedState);
    QVERIFY(socket.WriteMessage(QStringLiteral("hi")));
    QTRY_COMPARE(second->bytesAvailable(), qint64(10));
}

void Tst_IpcSocket::missingServerIsNoConnection() {
    m_server->close();
    IpcSocket socket;
    QVERIFY(!socket.ConnectToServer(serverName()));
    QVERIFY(!socket.isOpen());
}

void Tst_IpcSocket::strangersServerIsNoConnection() {
    if (!Stranger::isPossible())
        QSKIP("only root can become another user");
    QTemporaryDir folder;
    QVERIFY(QDir::setCurrent(folder.path()));
    QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    Stranger stranger([] {
        RawSocket socket;
        if (!socket.bindAndListen(QStringLiteral("listening")))
            return 1;
        ::sleep(60);
        return 0;
    });
    const QString path = folder.filePath(QStringLiteral("listening"));
    // It can be reached, and for that alone it must not count.
    QTRY_VERIFY(RawSocket().connectTo(path));
    IpcSocket socket;
    QVERIFY(!socket.ConnectToServer(path));
    QCOMPARE(socket.state(), QLocalSocket::UnconnectedState);
    QVERIFY(QDir::setCurrent(QStringLiteral("/")));
}

void Tst_IpcSocket::errorsAreLogged() {
    setTraceLevel(1);
    IpcSocket socket;
    QLocalSocket *other = connectPair(socket);
    QVERIFY(other);
    delete other;
    QString text;
    QVERIFY(!socket.ReadMessage(text));
    QVERIFY(logText().contains(QStringLiteral("OnSocketError : PeerClosedError")));
    m_server->close();
    QVERIFY(!socket.ConnectToServer(serverName()));
    QVERIFY(logText().contains(QStringLiteral("OnSocketError : ServerNotFoundError")));
    {
        RawSocket dead;
        QVERIFY(dead.bindAndListen(platform::localSocketPath(serverName())));
    }
    QVERIFY(!socket.ConnectToServer(serverName()));
    QVERIFY(logText().contains(QStringLiteral("OnSocketError : ConnectionRefusedError")));
    // Any other error comes with the socket's own words for its last one.
    QFile::remove(TraceLog::filePath());
    QVERIFY(!socket.errorString().isEmpty());
    emit socket.errorOccurred(QLocalSocket::SocketTimeoutError);
    QVERIFY(logText().contains(QStringLiteral("OnSocketError : ") + socket.errorString()));
    setTraceLevel(TraceLog::Off);
    QFile::remove(platform::localSocketPath(serverName()));
}

QTEST_GUILESS_MAIN(Tst_IpcSocket)
#include "tst_ipcsocket.moc"
