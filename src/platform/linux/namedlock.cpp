#include "platform/namedlock.h"

#include "platform/linux/descriptor.h"
#include "platform/linux/filelock.h"

#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A file that is taken away time and again is nothing to lock.
constexpr int maximumAttempts = 16;

/// Whether the open file is still the one that others find under that path.
bool isFileOfPath(int descriptor, const QByteArray &path) {
    struct stat opened;
    struct stat named;
    return ::fstat(descriptor, &opened) == 0 && ::lstat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

namespace platform {

NamedLock::NamedLock(const QString &name) : NamedLock(name, privateRuntimeFolder()) {}

NamedLock::NamedLock(const QString &name, const QString &folder) {
    if (!folder.isEmpty() && !name.isEmpty() && !name.contains(QLatin1Char('/')))
        m_path = QStringLiteral("%1/%2.lock").arg(folder, name);
}

NamedLock::~NamedLock() {
    unlock();
}

void NamedLock::unlock() {
    if (m_descriptor < 0)
        return;
    // A child between its fork and its exec holds the file open too.
    ::flock(m_descriptor, LOCK_UN);
    ::close(m_descriptor);
    m_descriptor = -1;
}

bool NamedLock::lock(int limitMs) {
    if (m_path.isEmpty() || m_descriptor >= 0)
        return false;
    const QByteArray path = QFile::encodeName(m_path);
    QElapsedTimer waiting;
    waiting.start();
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        Descriptor file(
            ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
        if (!file.isValid() || !lockWithin(file.get(), limitMs - int(waiting.elapsed())))
            return false;
        if (isFileOfPath(file.get(), path)) {
            m_descriptor = file.release();
            return true;
        }
        // Somebody tidied the folder while we waited: others now lock a newer file.
    }
    return false;
}

} // namespace platform
