// What a connection brings: any bytes, as one message of the local socket.

#include "fuzz/support/property.h"
#include "ipc/ipcsocket.h"

#include <QCoreApplication>
#include <QtEndian>

#include <sys/socket.h>
#include <unistd.h>

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

class Connection {
public:
    Connection() {
        int ends[2];
        require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "a pair of sockets can be had");
        m_otherEnd = ends[1];
        require(m_reader.setSocketDescriptor(ends[0]), "a socket can be read");
    }
    ~Connection() { close(); }

    /// The other end, which the caller owns from now on.
    int takeOtherEnd() { return std::exchange(m_otherEnd, -1); }
    void write(const QByteArray &bytes) {
        const auto written = ::send(m_otherEnd, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0);
        require(written == bytes.size(), "a message fits into the socket");
        close();
    }
    Message read() {
        Message message;
        message.isRead = m_reader.ReadMessage(message.text);
        return message;
    }

private:
    void close() {
        if (m_otherEnd >= 0)
            ::close(takeOtherEnd());
    }
    IpcSocket m_reader;
    int m_otherEnd = -1;
};

Message sentAndRead(const QString &text) {
    Connection connection;
    IpcSocket writer;
    require(writer.setSocketDescriptor(connection.takeOtherEnd()) && writer.WriteMessage(text),
            "what was read can be sent on");
    return connection.read();
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
    Connection connection;
    connection.write(bytes);
    const Message message = connection.read();
    const Message expected = expectedFrom(bytes);
    require(message.isRead == expected.isRead, "a message counts as read when there is more than its length");
    require(message.text == expected.text, "the text is what the wire format says, and empty if torn");

    const Message again = sentAndRead(message.text);
    require(again.isRead && again.text == message.text, "what was read arrives the same when sent on");
    return 0;
}
