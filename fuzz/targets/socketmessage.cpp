// What a connection brings: any bytes, as one message of the local socket.

#include "fuzz/support/scratchfolder.h"
#include "ipc/ipcsocket.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QtEndian>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <memory>

namespace {

/// Fits into a socket's buffer, so that one process can be both ends.
constexpr std::size_t LongestMessage = 16 * 1024;
constexpr int HeaderSize = 6;
constexpr quint32 NullText = 0xFFFFFFFF;

struct Message {
    bool isRead = false;
    QString text;
};

/// What the wire format says of the bytes, read by hand.
Message expectedFrom(const QByteArray &bytes) {
    Message message;
    // A length and nothing behind it is a torn message, which is worth no answer.
    message.isRead = bytes.size() > 2;
    if (bytes.size() < HeaderSize)
        return message;
    const auto size = qFromBigEndian<quint32>(bytes.constData() + 2);
    if (size == NullText || size % 2 != 0 || size > static_cast<quint32>(bytes.size() - HeaderSize))
        return message;
    for (quint32 i = 0; i < size; i += 2)
        message.text += QChar(qFromBigEndian<quint16>(bytes.constData() + HeaderSize + i));
    return message;
}

/// What arrives when these bytes come and nothing behind them.
Message received(const QByteArray &bytes) {
    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "a pair of sockets can be had");
    IpcSocket reader;
    require(reader.setSocketDescriptor(ends[0]), "a socket can be read");
    const auto written = ::send(ends[1], bytes.constData(), static_cast<std::size_t>(bytes.size()), 0);
    ::close(ends[1]);
    require(written == bytes.size(), "a message fits into the socket");
    Message message;
    message.isRead = reader.ReadMessage(message.text);
    return message;
}

/// The socket that a killed editor leaves behind.
void leaveSocketBehind(const QString &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    require(::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0,
            "a socket can be left behind");
    ::close(socket);
}

/// The editor that runs, and places where none does.
class Servers {
public:
    Servers() {
        require(m_living.listen(livingPath()), "a server can listen");
        leaveSocketBehind(deadPath());
    }
    QString livingPath() const { return m_folder.filePath(QStringLiteral("living")); }
    QString deadPath() const { return m_folder.filePath(QStringLiteral("dead")); }
    QString emptyPath() const { return m_folder.filePath(QStringLiteral("empty")); }
    std::unique_ptr<QLocalSocket> takeConnection() {
        require(m_living.waitForNewConnection(0), "who connects is heard");
        return std::unique_ptr<QLocalSocket>(m_living.nextPendingConnection());
    }

private:
    const ScratchFolder m_folder;
    QLocalServer m_living;
};

/// The road of a second start's command line to the editor that runs.
Message sentAndRead(const QString &text, Servers *servers) {
    IpcSocket writer;
    require(writer.ConnectToServer(servers->livingPath()) && writer.WriteMessage(text),
            "what was read can be sent on");
    Message message;
    message.isRead = IpcSocket::ReadMessage(*servers->takeConnection(), message.text);
    return message;
}

void checkNobodyHears(const QString &text, const QString &path) {
    IpcSocket writer;
    require(!writer.ConnectToServer(path) && !writer.WriteMessage(text),
            "nothing is sent where nobody listens");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static char name[] = "socketmessage";
    static char *arguments[] = {name, nullptr};
    static int count = 1;
    static const auto *const application = new QCoreApplication(count, arguments);
    require(application != nullptr, "there is an application");
    if (size > LongestMessage)
        return 0;

    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const Message message = received(bytes);
    const Message expected = expectedFrom(bytes);
    require(message.isRead == expected.isRead, "a message counts as read when there is more than its length");
    require(message.text == expected.text, "the text is what the wire format says, and empty if torn");

    static Servers servers;
    const Message again = sentAndRead(message.text, &servers);
    require(again.isRead && again.text == message.text, "what was read arrives the same when sent on");
    checkNobodyHears(message.text, servers.deadPath());
    checkNobodyHears(message.text, servers.emptyPath());
    return 0;
}
