#include "platform/memoryreturn.h"

#include <QFile>
#include <QtTest>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>

class Tst_MemoryReturn : public QObject {
    Q_OBJECT
private slots:
    void init();
    void freedPicturesLeaveNothingBehind();
    void holesBetweenBlocksGoBack();
};

namespace {

constexpr size_t Picture = 3840 * 2160 * 4;
constexpr qint64 Megabyte = 1 << 20;

struct Free {
    void operator()(char *block) const { std::free(block); }
};
using Block = std::unique_ptr<char, Free>;

/// A block whose pages are in use.
Block filled(size_t size) {
    Block block(static_cast<char *>(std::malloc(size)));
    std::memset(block.get(), 1, size);
    return block;
}

/// Bytes of this process that are in memory.
qint64 resident() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').at(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

} // namespace

void Tst_MemoryReturn::init() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("sanitizers bring an allocator of their own");
#endif
}

// What is taken in between keeps the heap from shrinking, as the rows of the captures do.
void Tst_MemoryReturn::freedPicturesLeaveNothingBehind() {
    platform::returnLargeBlocks();
    filled(Picture).reset();
    const qint64 before = resident();
    QVERIFY(before > 0);
    std::vector<Block> rows;
    for (int i = 0; i < 4; ++i) {
        const Block picture = filled(Picture);
        rows.push_back(filled(1000));
    }
    QVERIFY2(resident() - before < Megabyte, qPrintable(QString::number(resident() - before)));
}

void Tst_MemoryReturn::holesBetweenBlocksGoBack() {
    constexpr int Blocks = 20000;
    constexpr size_t BlockSize = 2000;
    constexpr int EachThatLives = 50; // one page of 25
    const qint64 before = resident();
    std::vector<Block> blocks;
    for (int i = 0; i < Blocks; ++i)
        blocks.push_back(filled(BlockSize));
    for (int i = 0; i < Blocks; ++i) {
        if (i % EachThatLives != 0)
            blocks[size_t(i)].reset();
    }
    const qint64 taken = resident() - before;
    QVERIFY2(taken > 35 * Megabyte, qPrintable(QString::number(taken)));
    platform::returnFreedMemory();
    const qint64 left = resident() - before;
    QVERIFY2(left < 6 * Megabyte, qPrintable(QString::number(left)));
    for (int i = 0; i < Blocks; i += EachThatLives)
        QCOMPARE(blocks[size_t(i)].get()[BlockSize - 1], char(1));
}

QTEST_GUILESS_MAIN(Tst_MemoryReturn)
#include "tst_memoryreturn.moc"
