#include "ipc/ipcclient.h"

#include "ipc/ipcsocket.h"

IpcClient::IpcClient(QObject *parent) : QObject(parent), m_socket(new IpcSocket(this)) {}

bool IpcClient::Test(const QString &name) {
    const bool connected = m_socket->ConnectToServer(name);
    m_socket->close();
    return connected;
}

bool IpcClient::Send(const QString &name, const QString &text) {
    if (!m_socket->ConnectToServer(name))
        return false;
    if (!m_socket->WriteMessage(text)) {
        m_socket->close();
        return false;
    }
    return true;
}
