#include "ipc/ipcclient.h"
#include "platform/localserversocket.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QtTest>

class Tst_IpcClient : public QObject {
    Q_OBJECT
private slots:
    void init();

    void noServerAnswers();
    void testConnectsAndCloses();
    void sendWritesAndKeepsTheConnection();
    void eachSendIsAConnectionOfItsOwn();

private:
    QLocalSocket *accepted();

    const QString m_name = QStringLiteral("tst_ipcclient");
    std::unique_ptr<QLocalServer> m_server;
};

void Tst_IpcClient::init() {
    m_server = std::make_unique<QLocalServer>();
    QVERIFY(m_server->listen(platform::localSocketPath(m_name)));
}

QLocalSocket *Tst_IpcClient::accepted() {
    return m_server->waitForNewConnection(5000) ? m_server->nextPendingConnection() : nullptr;
}

void Tst_IpcClient::noServerAnswers() {
    m_server.reset();
    IpcClient client;
    QVERIFY(!client.Test(m_name));
    QVERIFY(!client.Send(m_name, QStringLiteral("hi")));
}

void Tst_IpcClient::testConnectsAndCloses() {
    IpcClient client;
    QVERIFY(client.Test(m_name));
    QLocalSocket *other = accepted();
    QVERIFY(other);
    QTRY_COMPARE(other->state(), QLocalSocket::UnconnectedState);
    QCOMPARE(other->bytesAvailable(), qint64(0));
}

void Tst_IpcClient::sendWritesAndKeepsTheConnection() {
    QLocalSocket *other = nullptr;
    {
        IpcClient client;
        QVERIFY(client.Send(m_name, QStringLiteral("hi")));
        other = accepted();
        QVERIFY(other);
        QTRY_COMPARE(other->bytesAvailable(), qint64(10));
        QCOMPARE(other->readAll().toHex(), QByteArray("00080000000400680069"));
        QTest::qWait(50);
        QCOMPARE(other->state(), QLocalSocket::ConnectedState);
    }
    QTRY_COMPARE(other->state(), QLocalSocket::UnconnectedState);
}

void Tst_IpcClient::eachSendIsAConnectionOfItsOwn() {
    IpcClient client;
    QVERIFY(client.Send(m_name, QStringLiteral("a")));
    QLocalSocket *first = accepted();
    QVERIFY(first);
    QVERIFY(client.Send(m_name, QStringLiteral("b")));
    QLocalSocket *second = accepted();
    QVERIFY(second);
    QTRY_COMPARE(first->bytesAvailable(), qint64(8));
    QTRY_COMPARE(second->bytesAvailable(), qint64(8));
    QTRY_COMPARE(first->state(), QLocalSocket::UnconnectedState);
}

QTEST_GUILESS_MAIN(Tst_IpcClient)
#include "tst_ipcclient.moc"
