#include "ipc/ipcserver.h"

#include "ipc/ipcsocket.h"
#include "platform/localserversocket.h"
#include "platform/namedlock.h"

#include <QLocalServer>
#include <QSocketNotifier>
#include <QTimer>

namespace {

constexpr int probeTimeLimitMs = 1000;
constexpr int retryIntervalMs = 1000;

/// Whether the name is free, or taken by a socket at whose other end nobody is any more. A server too busy
/// to accept is alive.
bool isFree(const QString &path) {
    QLocalSocket probe;
    probe.connectToServer(path);
    if (probe.waitForConnected(probeTimeLimitMs))
        return false;
    return probe.error() == QLocalSocket::ServerNotFoundError ||
           probe.error() == QLocalSocket::ConnectionRefusedError;
}

} // namespace

IpcServer::IpcServer(QObject *parent) : QObject(parent) {}

IpcServer::~IpcServer() {
    Close();
}

void IpcServer::Close() {
    const bool isListening = m_server && m_server->isListening();
    // No further attempt to listen may follow.
    m_isClosed = true;
    if (!isListening)
        return;
    // Closing removes the socket by its name: a successor must not have put its own there in between.
    platform::NamedLock election(m_name);
    election.lock();
    m_server->close();
}

bool IpcServer::Listen(const QString &name) {
    if (name.isEmpty() || m_server)
        return false;
    const QString path = platform::localSocketPath(name);
    if (path.isEmpty() || !isFree(path))
        return false;
    m_name = name;
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &IpcServer::OnConnect);
    return listenAt(path);
}

/// With access options, listening replaces whatever socket has the name: only for one that is free.
bool IpcServer::listenAt(const QString &path) {
    QLocalServer::removeServer(path);
    if (!m_server->listen(path))
        return false;
    watchForEnd();
    return true;
}

/// A server whose process has no descriptor left for a new connection stops, and tells nobody. It does so in
/// answer to its notifier and switches that off, so what is connected to it later finds it off.
void IpcServer::watchForEnd() {
    const auto *notifier = m_server->findChild<QSocketNotifier *>(QString(), Qt::FindDirectChildrenOnly);
    if (!notifier)
        return;
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        if (notifier->isEnabled())
            return;
        // It does not know yet, and would remove a successor's socket when it learns.
        m_server->close();
        QTimer::singleShot(retryIntervalMs, this, &IpcServer::listenAgain);
    });
}

void IpcServer::listenAgain() {
    if (m_isClosed || m_server->isListening())
        return;
    platform::NamedLock election(m_name);
    const QString path = platform::localSocketPath(m_name);
    const bool isElected = election.tryLock() && !path.isEmpty() && isFree(path);
    if (!isElected || !listenAt(path))
        QTimer::singleShot(retryIntervalMs, this, &IpcServer::listenAgain);
}

void IpcServer::OnConnect() {
    QLocalSocket *socket = m_server->nextPendingConnection();
    if (!socket)
        return;
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!platform::isPeerCurrentUser(socket->socketDescriptor())) {
        socket->abort();
        return;
    }
    QString text;
    const bool isRead = IpcSocket::ReadMessage(*socket, text);
    // One message from each connection: whoever keeps his end open must not use up our descriptors.
    socket->disconnectFromServer();
    if (isRead && !text.isEmpty())
        emit sig_ipcMessage(text);
}
