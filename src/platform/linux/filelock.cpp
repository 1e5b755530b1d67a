#include "platform/linux/filelock.h"

#include <QElapsedTimer>
#include <QThread>

#include <sys/file.h>

#include <cerrno>

namespace {

/// Long enough to cost nothing, short enough not to be felt.
constexpr unsigned long pollingIntervalMs = 2;

} // namespace

bool platform::lockWithin(int descriptor, int limitMs) {
    QElapsedTimer waiting;
    waiting.start();
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR && errno != EWOULDBLOCK)
            return false;
        if (waiting.elapsed() >= limitMs)
            return false;
        QThread::msleep(pollingIntervalMs);
    }
    return true;
}
