#pragma once

#include <QObject>
#include <QSharedMemory>

/// Passes a text through a shared memory block of its own.
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
