#include "platform/linux/sessionbus.h"

#include <QFileInfo>
#include <QUrl>

QString platform::sessionBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.startsWith(QLatin1String("autolaunch:")))
        return QString();
    if (!address.isEmpty())
        return address;
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = runtimeFolder + QStringLiteral("/bus");
    if (runtimeFolder.isEmpty() || !QFileInfo::exists(socket))
        return QString();
    return QStringLiteral("unix:path=") + QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}
