#include "platform/linux/sessionbus.h"

#include "platform/linux/descriptor.h"

#include <QDBusError>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QStringList>
#include <QUrl>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

namespace {

/// A bus answers in fractions of a millisecond. The bus library would wait 25 s for one that does not.
constexpr int answerTimeoutMs = 250;
/// So long a bus that was silent is left alone, so that not every event pays for the wait.
constexpr int silenceMs = 10000;

enum class Answer { Given, Refused, Silence };

/// The socket's name as the system takes it; that of an abstract one begins with a zero. Other words of an
/// address are for those who listen: the bus library connects to none of them.
QByteArray socketName(const QString &entry) {
    const QString transport = QStringLiteral("unix:");
    if (!entry.startsWith(transport))
        return QByteArray();
    const QStringList pairs = entry.mid(transport.size()).split(QLatin1Char(','));
    for (const QString &pair : pairs) {
        const QString key = pair.section(QLatin1Char('='), 0, 0);
        const QByteArray value = QByteArray::fromPercentEncoding(pair.section(QLatin1Char('='), 1).toUtf8());
        if (key == QLatin1String("path"))
            return value;
        if (key == QLatin1String("abstract"))
            return '\0' + value;
    }
    return QByteArray();
}

/// Begins the greeting that each client of a bus begins with, and waits for any answer.
Answer greet(const QByteArray &name) {
    sockaddr_un address = {};
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isValid() || name.isEmpty() || std::size_t(name.size()) >= sizeof address.sun_path)
        return Answer::Refused;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()));
    // The length counts: an abstract name ends with it and not with a zero.
    const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + std::size_t(name.size()));
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), size) != 0)
        return errno == EAGAIN ? Answer::Silence : Answer::Refused;
    const QByteArray user = QByteArray::number(uint(::geteuid())).toHex();
    const QByteArray greeting = '\0' + QByteArray("AUTH EXTERNAL ") + user + "\r\n";
    if (::send(socket.get(), greeting.constData(), std::size_t(greeting.size()), MSG_NOSIGNAL) !=
        greeting.size())
        return Answer::Refused;
    struct pollfd readable = {socket.get(), POLLIN, 0};
    if (::poll(&readable, 1, answerTimeoutMs) <= 0)
        return Answer::Silence;
    char first = 0;
    return ::recv(socket.get(), &first, 1, 0) == 1 ? Answer::Given : Answer::Refused;
}

/// By address: since when a bus has been silent.
QHash<QString, QElapsedTimer> &silentBuses() {
    static QHash<QString, QElapsedTimer> buses;
    return buses;
}

bool isLeftAlone(const QString &entry) {
    const auto known = silentBuses().constFind(entry);
    return known != silentBuses().constEnd() && !known->hasExpired(silenceMs);
}

bool isAlive(const QString &entry) {
    if (isLeftAlone(entry))
        return false;
    const Answer answer = greet(socketName(entry));
    silentBuses().remove(entry);
    if (answer == Answer::Silence)
        silentBuses()[entry].start();
    return answer == Answer::Given;
}

QString namedAddress() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!address.isEmpty() || runtimeFolder.isEmpty())
        return address;
    const QString socket = runtimeFolder + QStringLiteral("/bus");
    return QStringLiteral("unix:path=") + QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}

/// The address of a session bus that answers, empty where there is none.
QString livingAddress() {
    const QStringList entries = namedAddress().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        if (isAlive(entry))
            return entry;
    }
    return QString();
}

/// By name of the connection: the bus that it was made to.
QHash<QString, QString> &addresses() {
    static QHash<QString, QString> known;
    return known;
}

} // namespace

QDBusConnection sessionbus::connection(const QString &name) {
    {
        const QDBusConnection known(name);
        if (known.isConnected() && !isLeftAlone(addresses().value(name)))
            return known;
    }
    QDBusConnection::disconnectFromBus(name);
    const QString address = livingAddress();
    if (address.isEmpty())
        return QDBusConnection(name);
    addresses()[name] = address;
    return QDBusConnection::connectToBus(address, name);
}

QDBusMessage sessionbus::ask(const QString &name, const QString &method, const QVariantList &arguments) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage request =
        QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
    request.setArguments(arguments);
    const QDBusConnection asked = connection(name);
    QDBusMessage reply = asked.call(request, QDBus::Block, answerTimeoutMs);
    // A bus that is stopped stays connected. One that has gone away may have been replaced already.
    if (QDBusError(reply).type() == QDBusError::NoReply && asked.isConnected())
        silentBuses()[addresses().value(name)].start();
    return reply;
}
