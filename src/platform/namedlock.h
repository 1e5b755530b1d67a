#pragma once

#include <QString>

namespace platform {

/// A lock between the processes of one user, known by its name; the system releases it when the holder
/// dies. Not recursive; the holder is the object.
class NamedLock {
public:
    /// The lock stands in the private runtime folder, or in another folder of this user alone.
    explicit NamedLock(const QString &name);
    NamedLock(const QString &name, const QString &folder);
    ~NamedLock();
    NamedLock(const NamedLock &) = delete;
    NamedLock &operator=(const NamedLock &) = delete;

    /// How long a holder is waited for that may be stopped, and must not stop us for ever.
    static constexpr int TimeLimitMs = 1000;

    /// Waits until the lock is ours; false when its holder keeps it beyond the limit, and when the system
    /// has no lock to give.
    bool lock(int limitMs = TimeLimitMs);
    /// Takes the lock if it is free.
    bool tryLock() { return lock(0); }
    void unlock();

private:
    QString m_path;
    int m_descriptor = -1;
};

/// The folder for sockets and locks that belongs to this user alone; empty when there is none.
QString privateRuntimeFolder();

} // namespace platform
