#include "platform/folderaccess.h"
#include "platform/namedlock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

/// Names tried below the temporary folder before the home folder has to do.
constexpr int temporaryNames = 8;

/// Whether the path itself (no symbolic link) is a folder that only this user can enter.
bool isOurPrivateFolder(const QString &path) {
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == ::geteuid() && (info.st_mode & 0777) == S_IRWXU;
}

/// Where the session's own folder may be. The second is known without the environment too, so that a start
/// from a bare one meets the editor of the session.
QStringList sessionFolders() {
    QStringList paths;
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(session))
        paths.append(QDir::cleanPath(session));
    // Tests have folders of their own.
    QString users = qEnvironmentVariable("TINDRA_USER_FOLDERS");
    if (users.isEmpty())
        users = QStringLiteral("/run/user");
    paths.append(QStringLiteral("%1/%2").arg(users).arg(::geteuid()));
    return paths;
}

bool createPrivateFolder(const QString &path) {
    return ::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0 && isOurPrivateFolder(path);
}

/// Where the folder may stand when the session has none. Anybody can take names below the temporary
/// folder first, nobody but us one below our home.
QStringList substituteFolders() {
    const QString name = QStringLiteral("tindra-%1").arg(::geteuid());
    QStringList paths;
    const QString temporary = QDir::tempPath();
    if (platform::keepsOurEntries(temporary)) {
        paths.append(temporary + QLatin1Char('/') + name);
        for (int i = 1; i < temporaryNames; ++i)
            paths.append(QStringLiteral("%1/%2-%3").arg(temporary, name).arg(i));
    }
    const QString home = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (!home.isEmpty() && QDir().mkpath(home))
        paths.append(home + QLatin1Char('/') + name);
    return paths;
}

} // namespace

QString platform::privateRuntimeFolder() {
    const QStringList sessions = sessionFolders();
    for (const QString &path : sessions) {
        if (isOurPrivateFolder(path))
            return path;
    }
    const QStringList candidates = substituteFolders();
    // A folder that stands already comes first: a name that somebody blocked and then gave free must not
    // part a running editor from those who look for it.
    for (const QString &path : candidates) {
        if (isOurPrivateFolder(path))
            return path;
    }
    for (const QString &path : candidates) {
        // Another process of ours may have been faster.
        if (createPrivateFolder(path) || isOurPrivateFolder(path))
            return path;
    }
    return QString();
}
