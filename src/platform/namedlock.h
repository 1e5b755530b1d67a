#pragma once

#include <QString>

namespace platform {

/// A lock between the processes of one user, known by its name; the system releases it when the holder
/// dies. Not recursive; the holder is the object.
class NamedLock {
public:
    explicit NamedLock(const QString &name);
    ~NamedLock();
    NamedLock(const NamedLock &) = delete;
    NamedLock &operator=(const NamedLock &) = delete;

    /// Waits until the lock is ours; false when the system has no lock to give.
    bool lock();
    /// Takes the lock if it is free.
    bool tryLock();
    void unlock();

private:
    bool acquire(bool wait);

    QString m_path;
    int m_descriptor = -1;
};

/// The folder for sockets and locks that belongs to this user alone.
QString privateRuntimeFolder();

} // namespace platform
