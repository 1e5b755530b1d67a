#include "ipc/ipcmemory.h"

#include <QBuffer>
#include <QDataStream>

#include <algorithm>
#include <cstring>

namespace {
constexpr int blockSize = 1048576;
}

IpcMemory::IpcMemory(QObject *parent) : QObject(parent) {}

IpcMemory::~IpcMemory() {
    m_memory.detach();
}

void IpcMemory::SetKey(const QString &key) {
    m_memory.setKey(key);
}

bool IpcMemory::Write(const QString &text) {
    if (text.isEmpty())
        return false;
    if (m_memory.isAttached())
        m_memory.detach();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    stream << text;

    const bool created = m_memory.create(blockSize, QSharedMemory::ReadWrite);
    const bool available = created || (m_memory.error() == QSharedMemory::AlreadyExists &&
                                       m_memory.attach(QSharedMemory::ReadWrite));
    if (!available || !m_memory.lock())
        return false;
    const auto size = std::min<std::size_t>(std::size_t(m_memory.size()), std::size_t(buffer.size()));
    std::memcpy(m_memory.data(), buffer.data().constData(), size);
    m_memory.unlock();
    return true;
}

bool IpcMemory::Read(QString &text) {
    if (!m_memory.isAttached() && !m_memory.attach(QSharedMemory::ReadOnly))
        return false;
    if (!m_memory.lock())
        return false;
    QByteArray block =
        QByteArray::fromRawData(static_cast<const char *>(m_memory.constData()), m_memory.size());
    QBuffer buffer(&block);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);
    stream >> text;
    m_memory.unlock();
    return !text.isEmpty();
}
