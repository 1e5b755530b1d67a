#include "ipc/ipcsocket.h"

#include "platform/localserversocket.h"
#include "services/tracelog.h"

#include <QDataStream>

namespace {

constexpr int timeLimitMs = 1000;

/// Fixed between the programs, whatever Qt each was built with.
constexpr int streamVersion = QDataStream::Qt_5_6;
static_assert(streamVersion == 17, "the capture process speaks version 17");

QByteArray encodedMessage(const QString &text) {
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << quint16(0) << text;
    stream.device()->seek(0);
    // Long texts overflow the field; readers go by the size of the text.
    stream << quint16(message.size() - int(sizeof(quint16)));
    return message;
}

} // namespace

IpcSocket::IpcSocket(QObject *parent) : QLocalSocket(parent) {
    connect(this, &QLocalSocket::errorOccurred, this, &IpcSocket::OnSocketError);
}

IpcSocket::~IpcSocket() {
    close();
}

bool IpcSocket::ConnectToServer(const QString &name) {
    abort();
    const QString path = platform::localSocketPath(name);
    if (path.isEmpty())
        return false;
    connectToServer(path, QIODevice::ReadWrite);
    if (!waitForConnected(timeLimitMs)) {
        close();
        return false;
    }
    if (!platform::isPeerCurrentUser(socketDescriptor())) {
        abort();
        return false;
    }
    return true;
}

bool IpcSocket::WriteMessage(const QString &text) {
    if (write(encodedMessage(text)) <= 0)
        return false;
    waitForBytesWritten(timeLimitMs);
    return true;
}

bool IpcSocket::ReadMessage(QString &text) {
    return ReadMessage(*this, text);
}

bool IpcSocket::ReadMessage(QLocalSocket &socket, QString &text) {
    // What has arrived already announces itself no second time.
    if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(timeLimitMs))
        return false;
    quint16 length = 0;
    if (socket.bytesAvailable() < qint64(sizeof length))
        return false;
    QDataStream stream(&socket);
    stream.setVersion(streamVersion);
    stream >> length;
    if (stream.atEnd())
        return false;
    stream >> text;
    return true;
}

void IpcSocket::OnSocketError(QLocalSocket::LocalSocketError socketError) {
    const QString tag = QStringLiteral("OnSocketError");
    switch (socketError) {
    case ConnectionRefusedError:
        trace(1, tag, "ConnectionRefusedError");
        break;
    case PeerClosedError:
        trace(1, tag, "PeerClosedError");
        break;
    case ServerNotFoundError:
        trace(1, tag, "ServerNotFoundError");
        break;
    default:
        trace(1, tag, "%ls", errorString().utf16());
    }
}
