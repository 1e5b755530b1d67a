#include "platform/privatefile.h"

#include "platform/linux/descriptor.h"
#include "platform/linux/filelock.h"
#include "platform/namedlock.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

constexpr mode_t PrivateFolderMode = S_IRWXU;
constexpr mode_t PrivateFileMode = S_IRUSR | S_IWUSR;
constexpr mode_t OthersRights = S_IRWXG | S_IRWXO;

int openFolder(const QByteArray &path) {
    ::mkdir(path.constData(), PrivateFolderMode); // fails when the folder is there, which is as good
    return ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// O_NONBLOCK: a named pipe in the file's place must not stop the program.
int openFile(int folder, const QByteArray &name) {
    return ::openat(folder, name.constData(),
                    O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, PrivateFileMode);
}

bool takeForUser(int descriptor, mode_t kind, mode_t mode, struct stat *entry) {
    if (::fstat(descriptor, entry) != 0 || (entry->st_mode & S_IFMT) != kind || entry->st_uid != ::geteuid())
        return false;
    return !(entry->st_mode & OthersRights) || ::fchmod(descriptor, mode) == 0;
}

/// A process that was stopped as it began a file anew keeps the lock. So long no line waits for it again.
constexpr std::chrono::seconds LockRest(10);
std::atomic<Clock::time_point> lockRestEnd{Clock::time_point::min()};

bool lockFolder(int folder) {
    const bool isResting = Clock::now() < lockRestEnd.load();
    if (platform::lockWithin(folder, isResting ? 0 : platform::NamedLock::TimeLimitMs))
        return true;
    if (!isResting)
        lockRestEnd = Clock::now() + LockRest;
    return false;
}

/// The lock keeps two processes that both saw a full file from removing each other's new one, which is why
/// who does not get it at once waits. Who does not get it at all leaves the file full and adds to it.
void removeFullFile(int folder, const QByteArray &name, qint64 sizeLimit) {
    if (!lockFolder(folder))
        return;
    struct stat entry;
    if (::fstatat(folder, name.constData(), &entry, AT_SYMLINK_NOFOLLOW) == 0 && entry.st_size >= sizeLimit)
        ::unlinkat(folder, name.constData(), 0);
    ::flock(folder, LOCK_UN);
}

bool writeOnce(int file, const QByteArray &bytes) {
    ssize_t written = -1;
    do {
        written = ::write(file, bytes.constData(), static_cast<size_t>(bytes.size()));
    } while (written < 0 && errno == EINTR);
    return written == bytes.size();
}

} // namespace

bool platform::appendToPrivateFile(const QString &path, const QByteArray &bytes, qint64 sizeLimit) {
    if (path.isEmpty())
        return false;
    const QFileInfo info(path);
    const QByteArray name = QFile::encodeName(info.fileName());
    struct stat entry;

    const Descriptor folder(openFolder(QFile::encodeName(info.path())));
    if (!folder.isValid() || !takeForUser(folder.get(), S_IFDIR, PrivateFolderMode, &entry))
        return false;
    Descriptor file(openFile(folder.get(), name));
    if (!file.isValid() || !takeForUser(file.get(), S_IFREG, PrivateFileMode, &entry))
        return false;
    if (entry.st_size >= sizeLimit) {
        removeFullFile(folder.get(), name, sizeLimit);
        file.reset(openFile(folder.get(), name));
        if (!file.isValid() || !takeForUser(file.get(), S_IFREG, PrivateFileMode, &entry))
            return false;
    }
    return writeOnce(file.get(), bytes);
}
