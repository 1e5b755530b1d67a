#pragma once

#include "platform/namedlock.h"

#include <QObject>

/// A lock between the processes of one user, known by its name and released when its holder dies.
class NamedMutex : public QObject {
    Q_OBJECT
public:
    explicit NamedMutex(const QString &name, QObject *parent = nullptr);

    /// Waits until the lock is ours, for a second at most; false when it is not.
    bool lock() { return m_lock.lock(); }
    void unlock() { m_lock.unlock(); }

private:
    platform::NamedLock m_lock;
};
