#include "platform/configurationfiles.h"

#include "platform/configuration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QString userFolder() {
    const QString home = qEnvironmentVariable("XDG_CONFIG_HOME");
    // A relative path would follow the working directory; the base directory rules say to ignore it.
    return QDir::isAbsolutePath(home) ? home : QDir::home().filePath(QStringLiteral(".config"));
}

QStringList machineFolders() {
    const QString folders = qEnvironmentVariable("XDG_CONFIG_DIRS");
    return folders.isEmpty() ? QStringList{QStringLiteral("/etc/xdg")} : folders.split(QLatin1Char(':'));
}

} // namespace

QString platform::configurationFile(const QString &vendor, const QString &name, ConfigurationScope scope) {
    const QString relative = QStringLiteral("%1/%2.conf").arg(vendor, name);
    if (scope == ConfigurationScope::User)
        return QDir(userFolder()).filePath(relative);
    for (const QString &folder : machineFolders()) {
        const QString path = QDir(folder).filePath(relative);
        if (QDir::isAbsolutePath(folder) && QFileInfo::exists(path))
            return path;
    }
    return QString();
}
