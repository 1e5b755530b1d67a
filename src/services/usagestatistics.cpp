#include "services/usagestatistics.h"

#include <QString>

#include <mutex>

namespace {

using Recorder = std::function<void(const QString &)>;

/// Recursive, since a recorder may report an event of its own or take itself out.
std::recursive_mutex &mutex() {
    static std::recursive_mutex instance;
    return instance;
}

Recorder &currentRecorder() {
    static Recorder recorder;
    return recorder;
}

} // namespace

void recordUsage(const char *code) {
    // Held during the call: once a recorder is replaced, what it needs may go at once.
    const std::lock_guard<std::recursive_mutex> locker(mutex());
    const Recorder recorder = currentRecorder();
    if (recorder)
        recorder(QString::fromLatin1(code));
}

void setUsageRecorder(std::function<void(const QString &code)> recorder) {
    const std::lock_guard<std::recursive_mutex> locker(mutex());
    currentRecorder() = std::move(recorder);
}
