#include "services/usagestatistics.h"

#include <QMutex>
#include <QString>

namespace {

using Recorder = std::function<void(const QString &)>;

/// Recursive, since a recorder may report an event of its own or take itself out.
QRecursiveMutex &mutex() {
    static QRecursiveMutex instance;
    return instance;
}

Recorder &currentRecorder() {
    static Recorder recorder;
    return recorder;
}

} // namespace

void recordUsage(const char *code) {
    // Held during the call: once a recorder is replaced, what it needs may go at once.
    const QMutexLocker locker(&mutex());
    const Recorder recorder = currentRecorder();
    if (recorder)
        recorder(QString::fromLatin1(code));
}

void setUsageRecorder(std::function<void(const QString &code)> recorder) {
    const QMutexLocker locker(&mutex());
    currentRecorder() = std::move(recorder);
}
