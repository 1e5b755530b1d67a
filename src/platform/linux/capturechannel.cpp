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

/// For the capture process itself, which may be drawing its overlay.
constexpr int answerTimeoutMs = 1000;

class DBusCaptureChannel : public CaptureChannel {
public:
    ~DBusCaptureChannel() override { QDBusConnection::disconnectFromBus(connectionName); }

    bool isCaptureProcessPresent() override;
    bool post(quint32 message, quint64 wParam, qint64 lParam) override;
    qint64 send(quint32 message, quint64 wParam, qint64 lParam) override;

private:
    static bool hasOwner();
    void deliverBeforeTheEnd();
    static QDBusMessage call(const QString &method, quint32 message, quint64 wParam, qint64 lParam);

    bool m_deliversBeforeTheEnd = false;
};

QDBusMessage DBusCaptureChannel::call(const QString &method, quint32 message, quint64 wParam, qint64 lParam) {
    QDBusMessage request = QDBusMessage::createMethodCall(service, object, service, method);
    request.setAutoStartService(false);
    request << message << wParam << lParam;
    return request;
}

bool DBusCaptureChannel::hasOwner() {
    const QDBusMessage reply =
        sessionbus::ask(connectionName, QStringLiteral("NameHasOwner"), {QString(service)});
    return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
}

bool DBusCaptureChannel::isCaptureProcessPresent() {
    return hasOwner();
}

bool DBusCaptureChannel::post(quint32 message, quint64 wParam, qint64 lParam) {
    const QDBusConnection connection = sessionbus::connection(connectionName);
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
                         if (QDBusConnection(connectionName).isConnected())
                             hasOwner();
                     });
}

qint64 DBusCaptureChannel::send(quint32 message, quint64 wParam, qint64 lParam) {
    const QDBusConnection connection = sessionbus::connection(connectionName);
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
