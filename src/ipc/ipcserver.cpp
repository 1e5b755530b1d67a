#include "ipc/ipcserver.h"

#include "ipc/ipcsocket.h"
#include "platform/localserversocket.h"
#include "platform/namedlock.h"

#include <QLocalServer>

namespace {

constexpr int probeTimeLimitMs = 1000;

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
    if (!m_server || !m_server->isListening())
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
    // With access options, listening replaces whatever socket has the name.
    if (path.isEmpty() || !isFree(path))
        return false;
    QLocalServer::removeServer(path);
    m_name = name;
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &IpcServer::OnConnect);
    return m_server->listen(path);
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
    if (!IpcSocket::ReadMessage(*socket, text) || text.isEmpty())
        socket->disconnectFromServer();
    else
        emit sig_ipcMessage(text);
}
