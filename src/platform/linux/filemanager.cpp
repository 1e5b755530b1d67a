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

/// A file manager that has to be started first may take its time, but the window does not wait for that.
constexpr int showTimeoutMs = 10000;

class DBusFileManager : public FileManager {
public:
    ~DBusFileManager() override { QDBusConnection::disconnectFromBus(connectionName); }

    bool showFile(const QString &path) override;

private:
    static bool isServiceThere();
    void openFolderUnlessAnswered(const QDBusPendingCall &call, const QString &path);

    QObject m_context;
};

/// Whether a file manager runs or can be started by the bus.
bool DBusFileManager::isServiceThere() {
    for (const char *method : {"ListNames", "ListActivatableNames"}) {
        const QDBusMessage reply = sessionbus::ask(connectionName, QLatin1String(method));
        if (reply.arguments().value(0).toStringList().contains(service))
            return true;
    }
    return false;
}

bool DBusFileManager::showFile(const QString &path) {
    if (path.isEmpty() || !isServiceThere())
        return false;
    QDBusMessage request =
        QDBusMessage::createMethodCall(service, object, service, QStringLiteral("ShowItems"));
    const QString url = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    request << QStringList{url} << QString();
    const QDBusConnection connection = sessionbus::connection(connectionName);
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
