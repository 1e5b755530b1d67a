#include "ipc/rawsocket.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace {

bool fillAddress(const QString &path, sockaddr_un &address) {
    const QByteArray name = QFile::encodeName(path);
    if (std::size_t(name.size()) >= sizeof address.sun_path)
        return false;
    address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()));
    return true;
}

} // namespace

RawSocket::RawSocket() : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}

RawSocket::~RawSocket() {
    close();
}

bool RawSocket::bindAndListen(const QString &path, int backlog) {
    sockaddr_un address;
    return fillAddress(path, address) &&
           ::bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
           ::listen(m_descriptor, backlog) == 0;
}

bool RawSocket::connectTo(const QString &path) {
    sockaddr_un address;
    if (!fillAddress(path, address))
        return false;
    const int flags = ::fcntl(m_descriptor, F_GETFL);
    ::fcntl(m_descriptor, F_SETFL, flags | O_NONBLOCK);
    const bool connected =
        ::connect(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::fcntl(m_descriptor, F_SETFL, flags);
    return connected;
}

bool RawSocket::writeAll(const QByteArray &bytes) {
    return ::send(m_descriptor, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

QByteArray RawSocket::readToEnd(int limitMs, bool *closed) {
    QByteArray result;
    std::array<char, 65536> chunk;
    struct pollfd readable = {m_descriptor, POLLIN, 0};
    while (::poll(&readable, 1, limitMs) > 0) {
        const ssize_t size = ::read(m_descriptor, chunk.data(), chunk.size());
        if (size <= 0) {
            *closed = true;
            return result;
        }
        result.append(chunk.data(), int(size));
    }
    *closed = false;
    return result;
}

void RawSocket::close() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}
