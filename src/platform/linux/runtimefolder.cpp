#include "platform/namedlock.h"

#include <QDir>
#include <QFile>
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

/// Whether what we put into the folder stays ours: nobody else may rename or remove it.
bool keepsOurEntries(const QString &path) {
    struct stat info;
    if (::stat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
        return false;
    const bool trustedOwner = info.st_uid == 0 || info.st_uid == ::geteuid();
    const bool othersWrite = info.st_mode & (S_IWGRP | S_IWOTH);
    return trustedOwner && (!othersWrite || (info.st_mode & S_ISVTX));
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
    if (keepsOurEntries(temporary)) {
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
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(session) && isOurPrivateFolder(session))
        return QDir::cleanPath(session);

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
