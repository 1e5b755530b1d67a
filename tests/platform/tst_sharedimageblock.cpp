#include "platform/sharedimageblock.h"

#include <QSharedMemory>
#include <QtTest>

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstring>

/// The block as a capture process makes it with nothing but the system's own calls.
class Tst_SharedImageBlock : public QObject {
    Q_OBJECT
private slots:
    void cleanup();
    void meetsABlockMadeBySystemCalls();
    void staysOneBlockWhateverTheWorkingFolder();
    void cannotBeAttachedWithoutKeyFile();

private:
    char *makeBlock(std::size_t size);

    int m_id = -1;
    void *m_address = nullptr;
};

void Tst_SharedImageBlock::cleanup() {
    if (m_address)
        ::shmdt(m_address);
    if (m_id >= 0)
        ::shmctl(m_id, IPC_RMID, nullptr);
    m_address = nullptr;
    m_id = -1;
    QFile::remove(platform::sharedImageBlock().nativeKey);
}

char *Tst_SharedImageBlock::makeBlock(std::size_t size) {
    const QString keyFile = platform::sharedImageBlock().nativeKey;
    QFile file(keyFile);
    if (!file.open(QIODevice::WriteOnly))
        return nullptr;
    m_id = ::shmget(::ftok(QFile::encodeName(keyFile).constData(), 'Q'), size, IPC_CREAT | IPC_EXCL | 0600);
    if (m_id < 0)
        return nullptr;
    m_address = ::shmat(m_id, nullptr, 0);
    return static_cast<char *>(m_address);
}

void Tst_SharedImageBlock::meetsABlockMadeBySystemCalls() {
    constexpr int size = 12345;
    char *bytes = makeBlock(size);
    QVERIFY(bytes);
    std::memcpy(bytes, "picture", 7);
    QSharedMemory memory;
    memory.setNativeKey(platform::sharedImageBlock().nativeKey);
    QVERIFY2(memory.attach(QSharedMemory::ReadOnly), qPrintable(memory.errorString()));
    // The editor refuses byte counts by this size, so it must not be rounded up to pages.
    QCOMPARE(memory.size(), size);
    QCOMPARE(QByteArray(static_cast<const char *>(memory.constData()), 7), QByteArray("picture"));
}

void Tst_SharedImageBlock::staysOneBlockWhateverTheWorkingFolder() {
    QVERIFY(makeBlock(10));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QStringLiteral("/")));
    QSharedMemory memory;
    memory.setNativeKey(platform::sharedImageBlock().nativeKey);
    const bool attached = memory.attach(QSharedMemory::ReadOnly);
    QDir::setCurrent(before);
    QVERIFY(attached);
}

void Tst_SharedImageBlock::cannotBeAttachedWithoutKeyFile() {
    QSharedMemory memory;
    memory.setNativeKey(platform::sharedImageBlock().nativeKey);
    QVERIFY(!memory.attach(QSharedMemory::ReadOnly));
}

QTEST_GUILESS_MAIN(Tst_SharedImageBlock)
#include "tst_sharedimageblock.moc"
