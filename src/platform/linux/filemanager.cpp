#include "platform/filemanager.h"

#include "platform/linux/linuxservices.h"
#include "platform/linux/sessionbus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QObject>
#include <QUrl>
#include <QVariant>

namespace {

const QLatin1String service("org.freedesktop.FileManager1");
const QLatin1String object("/org/freedesktop/FileManager1");
const QLatin1String connectionName("tindra-filemanager");

/// The bus itself answers at once; a file manager that has to be started first may take its time, but the
/// window does not wait for that.
constexpr int lookupTimeoutMs = 250;
constexpr int showTimeoutMs = 10000;

QDBusMessage busCall(const QString &method) {
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName, method);
}

class DBusFileManager : public FileManager {
public:
    ~DBusFileManager() override { QDBusConnection::disconnectFromBus(connectionName); }

    bool showFile(const QString &path) override;

private:
    static QDBusConnection bus();
    static bool isServiceThere(const QDBusConnection &connection);
    void openFolderUnlessAnswered(const QDBusPendingCall &call, const QString &path);

    QObject m_context;
};

QDBusConnection DBusFileManager::bus() {
    const QDBusConnection known(connectionName);
    if (known.isConnected())
        return known;
    const QString address = platform::sessionBusAddress();
    if (address.isEmpty())
        return known;
    QDBusConnection::disconnectFromBus(connectionName);
    return QDBusConnection::connectToBus(address, connectionName);
}

/// Whether a file manager runs or can be started by the bus.
bool DBusFileManager::isServiceThere(const QDBusConnection &connection) {
    for (const char *method : {"ListNames", "ListActivatableNames"}) {
        const QDBusMessage reply =
            connection.call(busCall(QLatin1String(method)), QDBus::Block, lookupTimeoutMs);
        if (reply.arguments().value(0).toStringList().contains(service))
            return true;
    }
    return false;
}

bool DBusFileManager::showFile(const QString &path) {
    if (path.isEmpty())
        return false;
    const QDBusConnection connection = bus();
    if (!connection.isConnected() || !isServiceThere(connection))
        return false;
    QDBusMessage request =
        QDBusMessage::createMethodCall(service, object, service, QStringLiteral("ShowItems"));
    const QString url = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    request << QStringList{url} << QString();
    openFolderUnlessAnswered(connection.asyncCall(request, showTimeoutMs), path);
    return true;
}

/// A file manager that was there and refused leaves the user without a window, so the folder opens then.
void DBusFileManager::openFolderUnlessAnswered(const QDBusPendingCall &call, const QString &path) {
    auto *watcher = new QDBusPendingCallWatcher(call, &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [watcher, path] {
        watcher->deleteLater();
        if (watcher->isError())
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
    });
}

} // namespace

std::unique_ptr<FileManager> makeFileManager() {
    return std::make_unique<DBusFileManager>();
}
