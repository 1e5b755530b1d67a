#include "platform/capturechannel.h"

#include "platform/linux/linuxservices.h"
#include "platform/linux/sessionbus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariant>

namespace {

const QLatin1String service("com.norvane.Tindra.Capture");
const QLatin1String object("/com/norvane/Tindra/Capture");
const QLatin1String connectionName("tindra-capture");

/// The bus answers in fractions of a millisecond; one that does not must not hold the window up.
constexpr int lookupTimeoutMs = 250;
/// For the capture process itself, which may be drawing its overlay.
constexpr int answerTimeoutMs = 1000;

class DBusCaptureChannel : public CaptureChannel {
public:
    ~DBusCaptureChannel() override { QDBusConnection::disconnectFromBus(connectionName); }

    bool isCaptureProcessPresent() override;
    bool post(quint32 message, quint64 wParam, qint64 lParam) override;
    qint64 send(quint32 message, quint64 wParam, qint64 lParam) override;

private:
    static QDBusConnection bus();
    static bool hasOwner(const QDBusConnection &connection);
    void deliverBeforeTheEnd();
    static QDBusMessage call(const QString &method, quint32 message, quint64 wParam, qint64 lParam);

    bool m_deliversBeforeTheEnd = false;
};

/// The connection to the session bus, made anew when the bus has gone away in between.
QDBusConnection DBusCaptureChannel::bus() {
    const QDBusConnection known(connectionName);
    if (known.isConnected())
        return known;
    const QString address = platform::sessionBusAddress();
    if (address.isEmpty())
        return known;
    QDBusConnection::disconnectFromBus(connectionName);
    return QDBusConnection::connectToBus(address, connectionName);
}

QDBusMessage DBusCaptureChannel::call(const QString &method, quint32 message, quint64 wParam, qint64 lParam) {
    QDBusMessage request = QDBusMessage::createMethodCall(service, object, service, method);
    request.setAutoStartService(false);
    request << message << wParam << lParam;
    return request;
}

bool DBusCaptureChannel::hasOwner(const QDBusConnection &connection) {
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    request << QString(service);
    const QDBusMessage reply = connection.call(request, QDBus::Block, lookupTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
}

bool DBusCaptureChannel::isCaptureProcessPresent() {
    const QDBusConnection connection = bus();
    return connection.isConnected() && hasOwner(connection);
}

bool DBusCaptureChannel::post(quint32 message, quint64 wParam, qint64 lParam) {
    const QDBusConnection connection = bus();
    if (!connection.isConnected())
        return false;
    deliverBeforeTheEnd();
    return connection.send(call(QStringLiteral("Post"), message, wParam, lParam));
}

/// A thread of the bus library writes the events out, and the end of the program would cut it short: about
/// half of the events posted right before it were lost. The bus answers in order, so an answer means that
/// it has taken everything before the question.
void DBusCaptureChannel::deliverBeforeTheEnd() {
    if (m_deliversBeforeTheEnd)
        return;
    m_deliversBeforeTheEnd = true;
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit,
                     QCoreApplication::instance(), [] {
                         const QDBusConnection known(connectionName);
                         if (known.isConnected())
                             hasOwner(known);
                     });
}

qint64 DBusCaptureChannel::send(quint32 message, quint64 wParam, qint64 lParam) {
    const QDBusConnection connection = bus();
    if (!connection.isConnected())
        return 0;
    const QDBusMessage reply =
        connection.call(call(QStringLiteral("Send"), message, wParam, lParam), QDBus::Block, answerTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toLongLong() : 0;
}

} // namespace

std::unique_ptr<CaptureChannel> makeCaptureChannel() {
    return std::make_unique<DBusCaptureChannel>();
}
