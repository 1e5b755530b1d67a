#include "platform/folderaccess.h"

#include "platform/linux/descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr mode_t PrivateMode = S_IRWXU;
constexpr mode_t OthersRights = S_IRWXG | S_IRWXO;

bool makeMissingFolders(const QString &path) {
    if (QFileInfo::exists(path))
        return true;
    const QString parent = QFileInfo(path).path();
    if (parent != path && !makeMissingFolders(parent))
        return false;
    return ::mkdir(QFile::encodeName(path).constData(), PrivateMode) == 0 || errno == EEXIST;
}

/// In a folder that everybody may write to, such as the temporary one, a stranger can lay a link under our
/// name that leads wherever he likes. A link that the user or the administrator laid is meant.
bool isTrustedEntry(const QByteArray &path) {
    struct stat entry;
    if (::lstat(path.constData(), &entry) != 0)
        return false;
    return !S_ISLNK(entry.st_mode) || entry.st_uid == ::geteuid() || entry.st_uid == 0;
}

/// Works on the opened folder: what stands under the name may change between two looks.
bool takeOthersRights(int descriptor) {
    struct stat folder;
    if (::fstat(descriptor, &folder) != 0 || folder.st_uid != ::geteuid())
        return false;
    return !(folder.st_mode & OthersRights) || ::fchmod(descriptor, PrivateMode) == 0;
}

bool isTrusted(uid_t user) {
    return user == 0 || user == ::geteuid();
}

/// Whether nobody may rename or remove what another put into the folder.
bool keepsEntriesOfItsUsers(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat folder;
    struct stat entry;
    if (::stat(name.constData(), &folder) != 0 || ::lstat(name.constData(), &entry) != 0)
        return false;
    const bool othersWrite = folder.st_mode & (S_IWGRP | S_IWOTH);
    // A link leads wherever its owner likes.
    return S_ISDIR(folder.st_mode) && isTrusted(folder.st_uid) && isTrusted(entry.st_uid) &&
           (!othersWrite || (folder.st_mode & S_ISVTX));
}

bool keepsEntriesUpToTheRoot(QString path) {
    while (keepsEntriesOfItsUsers(path)) {
        if (path == QLatin1String("/"))
            return true;
        path = QFileInfo(path).path();
    }
    return false;
}

} // namespace

bool isDirectoryWritable(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat entry;
    if (name.isEmpty() || ::stat(name.constData(), &entry) != 0 || !S_ISDIR(entry.st_mode))
        return false;
    return ::faccessat(AT_FDCWD, name.constData(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

bool platform::makePrivateFolder(const QString &path) {
    if (path.isEmpty())
        return false;
    const QString cleanPath = QDir::cleanPath(QDir(path).absolutePath());
    const QByteArray name = QFile::encodeName(cleanPath);
    if (!makeMissingFolders(cleanPath) || !isTrustedEntry(name))
        return false;
    const Descriptor folder(::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.isValid() && takeOthersRights(folder.get());
}

bool platform::keepsOurEntries(const QString &path) {
    const QString target = QFileInfo(path).canonicalFilePath();
    return !target.isEmpty() && keepsEntriesUpToTheRoot(QDir::cleanPath(QDir(path).absolutePath())) &&
           keepsEntriesUpToTheRoot(target);
}
