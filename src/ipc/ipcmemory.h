#pragma once

#include <QObject>
#include <QSharedMemory>

/// Passes a text through a shared memory block of its own, which is made by the first who writes and goes
/// with the last object that is attached to it.
///
/// `Write` is false for an empty text, and both are when the block or its lock cannot be had. The block has
/// 1 MiB; of a longer text its beginning gets there, and reading that is false. One thread for each object.
class IpcMemory : public QObject {
    Q_OBJECT
public:
    explicit IpcMemory(QObject *parent = nullptr);
    ~IpcMemory() override;

    void SetKey(const QString &key);
    bool Write(const QString &text);
    bool Read(QString &text);

private:
    QSharedMemory m_memory;
};
