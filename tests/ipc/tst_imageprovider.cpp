#include "ipc/imageprovider.h"
#include "ipc/stranger.h"
#include "platform/namedlock.h"
#include "platform/sharedimageblock.h"
#include "support/imagecompare.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QSharedMemory>
#include <QTemporaryDir>
#include <QTest>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>

namespace {

/// Of each block that this process left: whether the lock was still held.
QVector<bool> detaches;

QImage filled(const QSize &size, const QColor &color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QByteArray encoded(const QImage &image, const char *format = "png") {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

/// What the capture process does: the block with an encoded image at its start.
class CaptureSide {
public:
    explicit CaptureSide(const QByteArray &bytes, int blockSize = 0) {
        m_block.setNativeKey(platform::sharedImageBlock().nativeKey);
        m_created = m_block.create(blockSize > 0 ? blockSize : qMax(1, bytes.size()));
        if (m_created)
            std::memcpy(m_block.data(), bytes.constData(), size_t(bytes.size()));
    }
    bool created() const { return m_created; }
    int size() const { return m_block.size(); }

private:
    QSharedMemory m_block;
    bool m_created;
};

} // namespace

/// Stands before the system's own, for Qt too.
extern "C" int shmdt(const void *address) noexcept {
    detaches.append(!platform::NamedLock(platform::sharedImageBlock().lockName).tryLock());
    return int(::syscall(SYS_shmdt, address));
}

class Tst_ImageProvider : public QObject {
    Q_OBJECT
private slots:
    void init() { ImageProvider::resetForTesting(); }

    void memoryImageIsKnownByItsKey();
    void memoryImageOutlivesTheBlock();
    void readsOnlyTheToldBytes();
    void refusesSizes_data();
    void refusesSizes();
    void missingBlockLeavesTheKeyUnknown();
    void bytesThatAreNoImageGiveAnEmptyEntry();
    void waitsForTheLockOfTheBlock();
    void givesUpOnALockThatIsKept();
    void leavesTheBlockBeforeTheLock_data();
    void leavesTheBlockBeforeTheLock();
    void blockOfAStrangerIsRefused_data();
    void blockOfAStrangerIsRefused();
    void sameKeyTwiceShowsTheSecond();
    void sameKeyTwiceReplacesAndCountsTwice();
    void budgetIsKept();
    void fileComesBeforeMemory();
    void brokenFileFallsBackToMemory();
    void nameThatPromisesADenserScreenChangesNothing();
    void relativePathIsNoFile();
    void specialFileIsNoImage();
    void currentImageIsServedWithoutAnotherLook();
    void unknownPathLeavesTheCurrentImage();
    void removeDeletesFileAndMemory();
    void removeLeavesFilesOfRelativeNames();
    void removeOfNothing();
    void forgottenImageLeavesItsFile();
    void dropFromMemory();
    void isFile_data();
    void isFile();
    void instanceIsOne();

private:
    ImageProvider &provider() { return *ImageProvider::instance(); }
    QString writeFile(const QString &name, const QByteArray &bytes);

    QTemporaryDir m_folder;
};

QString Tst_ImageProvider::writeFile(const QString &name, const QByteArray &bytes) {
    const QString path = m_folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return path;
}

void Tst_ImageProvider::memoryImageIsKnownByItsKey() {
    const QImage picture = filled(QSize(30, 20), Qt::red);
    const QByteArray bytes = encoded(picture);
    const CaptureSide capture(bytes);
    QVERIFY(capture.created());
    provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    COMPARE_IMAGES(provider().pixmap(QStringLiteral("key")).toImage(), picture, "memory");
}

void Tst_ImageProvider::memoryImageOutlivesTheBlock() {
    const QImage picture = filled(QSize(512, 512), Qt::green);
    const QByteArray bytes = encoded(picture, "bmp");
    {
        const CaptureSide capture(bytes);
        provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    }
    QSharedMemory gone;
    gone.setNativeKey(platform::sharedImageBlock().nativeKey);
    QVERIFY(!gone.attach(QSharedMemory::ReadOnly));
    COMPARE_IMAGES(provider().pixmap(QStringLiteral("key")).toImage(), picture, "memory");
    QCOMPARE(provider().usedMegabytes(), 1.0);
}

void Tst_ImageProvider::readsOnlyTheToldBytes() {
    const QByteArray bytes = encoded(filled(QSize(30, 20), Qt::red));
    const CaptureSide capture(bytes, bytes.size() + 100);
    provider().loadFromMemory(QStringLiteral("cut"), 20);
    QVERIFY(provider().pixmap(QStringLiteral("cut")).isNull());
}

void Tst_ImageProvider::refusesSizes_data() {
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("relativeToBlock");
    QTest::newRow("one beyond the block") << 1 << true;
    QTest::newRow("far beyond the block") << 1000000000 << true;
    QTest::newRow("zero") << 0 << false;
    QTest::newRow("negative") << -1 << false;
    QTest::newRow("most negative") << std::numeric_limits<int>::min() << false;
}

void Tst_ImageProvider::refusesSizes() {
    QFETCH(int, offset);
    QFETCH(bool, relativeToBlock);
    const CaptureSide capture(encoded(filled(QSize(30, 20), Qt::red)));
    provider().loadFromMemory(QStringLiteral("key"), relativeToBlock ? capture.size() + offset : offset);
    QVERIFY(provider().pixmap(QStringLiteral("key")).isNull());
    QVERIFY(!provider().dropFromMemory(QStringLiteral("key")));
}

void Tst_ImageProvider::missingBlockLeavesTheKeyUnknown() {
    provider().loadFromMemory(QStringLiteral("key"), 100);
    QVERIFY(provider().pixmap(QStringLiteral("key")).isNull());
    QVERIFY(!provider().dropFromMemory(QStringLiteral("key")));
}

void Tst_ImageProvider::bytesThatAreNoImageGiveAnEmptyEntry() {
    const QByteArray bytes(200, 'x');
    const CaptureSide capture(bytes);
    provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    QVERIFY(provider().pixmap(QStringLiteral("key")).isNull());
    QCOMPARE(provider().usedMegabytes(), 0.0);
    QVERIFY(provider().dropFromMemory(QStringLiteral("key")));
}

void Tst_ImageProvider::waitsForTheLockOfTheBlock() {
    const QByteArray bytes = encoded(filled(QSize(30, 20), Qt::red));
    const CaptureSide capture(bytes);
    const QString lockName = platform::sharedImageBlock().lockName;
    std::atomic<bool> released{false};
    QSemaphore locked;
    const std::unique_ptr<QThread> writer(QThread::create([&] {
        platform::NamedLock lock(lockName);
        lock.lock();
        locked.release();
        QThread::msleep(50);
        released = true;
        lock.unlock();
    }));
    writer->start();
    locked.acquire();
    provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    QVERIFY(released);
    writer->wait();
    QVERIFY(platform::NamedLock(lockName).tryLock());
    QVERIFY(!provider().pixmap(QStringLiteral("key")).isNull());
}

void Tst_ImageProvider::givesUpOnALockThatIsKept() {
    const QByteArray bytes = encoded(filled(QSize(30, 20), Qt::red));
    const CaptureSide capture(bytes);
    platform::NamedLock stopped(platform::sharedImageBlock().lockName);
    QVERIFY(stopped.lock());
    QElapsedTimer timer;
    timer.start();
    provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    QVERIFY(timer.elapsed() >= 900);
    QVERIFY(timer.elapsed() < 5000);
    QVERIFY(provider().pixmap(QStringLiteral("key")).isNull());
    QVERIFY(!provider().dropFromMemory(QStringLiteral("key")));
}

void Tst_ImageProvider::leavesTheBlockBeforeTheLock_data() {
    QTest::addColumn<int>("told");
    QTest::newRow("read") << 0;
    QTest::newRow("size refused") << 1000000000;
}

void Tst_ImageProvider::leavesTheBlockBeforeTheLock() {
    QFETCH(int, told);
    const QByteArray bytes = encoded(filled(QSize(30, 20), Qt::red));
    const CaptureSide capture(bytes);
    detaches.clear();
    provider().loadFromMemory(QStringLiteral("key"), told ? told : bytes.size());
    QCOMPARE(detaches, QVector<bool>{true});
}

void Tst_ImageProvider::blockOfAStrangerIsRefused_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("givenToUs");
    QTest::newRow("open to all") << 0666 << false;
    QTest::newRow("given to us, its maker keeps his rights") << 0600 << true;
}

void Tst_ImageProvider::blockOfAStrangerIsRefused() {
    if (!Stranger::isPossible())
        QSKIP("only root can become another user");
    QFETCH(int, mode);
    QFETCH(bool, givenToUs);
    const QString keyFile = platform::sharedImageBlock().nativeKey;
    QVERIFY(QFile(keyFile).open(QIODevice::WriteOnly));
    const key_t key = ::ftok(QFile::encodeName(keyFile).constData(), 'Q');
    const QByteArray bytes = encoded(filled(QSize(30, 20), Qt::red));
    const uid_t user = ::geteuid();
    Stranger stranger([&] {
        const int id = ::shmget(key, std::size_t(bytes.size()), IPC_CREAT | IPC_EXCL | mode);
        void *address = ::shmat(id, nullptr, 0);
        if (id < 0 || address == reinterpret_cast<void *>(-1))
            return 1;
        std::memcpy(address, bytes.constData(), std::size_t(bytes.size()));
        struct shmid_ds block;
        if (::shmctl(id, IPC_STAT, &block) != 0)
            return 2;
        block.shm_perm.uid = user;
        return givenToUs && ::shmctl(id, IPC_SET, &block) != 0 ? 3 : 0;
    });
    QCOMPARE(stranger.wait(), 0);
    const int id = ::shmget(key, 0, 0);
    QVERIFY(id >= 0);
    provider().loadFromMemory(QStringLiteral("key"), bytes.size());
    ::shmctl(id, IPC_RMID, nullptr);
    QFile::remove(keyFile);
    QVERIFY(!provider().dropFromMemory(QStringLiteral("key")));
}

void Tst_ImageProvider::sameKeyTwiceShowsTheSecond() {
    const QString key = QStringLiteral("key");
    QVERIFY(provider().insert(key, QPixmap::fromImage(filled(QSize(10, 10), Qt::red))));
    QCOMPARE(provider().pixmap(key).width(), 10);
    const QImage second = filled(QSize(20, 20), Qt::blue);
    QVERIFY(provider().insert(key, QPixmap::fromImage(second)));
    COMPARE_IMAGES(provider().pixmap(key).toImage(), second, "second");
}

void Tst_ImageProvider::sameKeyTwiceReplacesAndCountsTwice() {
    const QString key = QStringLiteral("key");
    QVERIFY(provider().insert(key, QPixmap::fromImage(filled(QSize(1024, 1024), Qt::red))));
    QCOMPARE(provider().usedMegabytes(), 4.0);
    const QImage second = filled(QSize(1024, 512), Qt::blue);
    QVERIFY(provider().insert(key, QPixmap::fromImage(second)));
    QCOMPARE(provider().usedMegabytes(), 6.0);
    COMPARE_IMAGES(provider().pixmap(key).toImage(), second, "second");
    QVERIFY(provider().dropFromMemory(key));
    QCOMPARE(provider().usedMegabytes(), 4.0);
}

void Tst_ImageProvider::budgetIsKept() {
    // One pixmap, shared: the count goes by size and not by memory in truth.
    const QPixmap large = QPixmap::fromImage(filled(QSize(8192, 4096), Qt::red));
    for (int i = 0; i < 8; ++i)
        QVERIFY(provider().insert(QString::number(i), large));
    QCOMPARE(provider().usedMegabytes(), 1024.0);
    QVERIFY(!provider().insert(QStringLiteral("more"), QPixmap::fromImage(filled(QSize(512, 512), Qt::red))));
    QCOMPARE(provider().usedMegabytes(), 1024.0);
    QVERIFY(provider().pixmap(QStringLiteral("more")).isNull());
    QVERIFY(provider().insert(QStringLiteral("tiny"), QPixmap::fromImage(filled(QSize(511, 512), Qt::red))));
    QVERIFY(provider().dropFromMemory(QStringLiteral("3")));
    QCOMPARE(provider().usedMegabytes(), 896.0);
    QVERIFY(provider().insert(QStringLiteral("more"), QPixmap::fromImage(filled(QSize(512, 512), Qt::red))));
}

void Tst_ImageProvider::fileComesBeforeMemory() {
    const QImage onDisk = filled(QSize(10, 10), Qt::green);
    // The name lies about the format.
    const QString path = writeFile(QStringLiteral("both.jpg"), encoded(onDisk));
    QVERIFY(provider().insert(path, QPixmap::fromImage(filled(QSize(20, 20), Qt::red))));
    COMPARE_IMAGES(provider().pixmap(path).toImage(), onDisk, "file");
}

void Tst_ImageProvider::brokenFileFallsBackToMemory() {
    const QImage inMemory = filled(QSize(20, 20), Qt::red);
    const QString path = writeFile(QStringLiteral("broken.png"), "no image");
    QVERIFY(provider().pixmap(path).isNull());
    QVERIFY(provider().insert(path, QPixmap::fromImage(inMemory)));
    COMPARE_IMAGES(provider().pixmap(path).toImage(), inMemory, "memory");
}

void Tst_ImageProvider::nameThatPromisesADenserScreenChangesNothing() {
    const QImage picture = filled(QSize(30, 20), Qt::red);
    const QPixmap pixmap = provider().pixmap(writeFile(QStringLiteral("shot@2x.png"), encoded(picture)));
    // The toolkit scales a picture of that name down; a pixel of a capture is a pixel.
    QCOMPARE(pixmap.devicePixelRatio(), 1.0);
    COMPARE_IMAGES(pixmap.toImage(), picture, "file");
}

void Tst_ImageProvider::relativePathIsNoFile() {
    const QString before = QDir::currentPath();
    QDir::setCurrent(m_folder.path());
    QVERIFY(!writeFile(QStringLiteral("relative.png"), encoded(filled(QSize(5, 5), Qt::red))).isEmpty());
    const QPixmap pixmap = provider().pixmap(QStringLiteral("relative.png"));
    QDir::setCurrent(before);
    QVERIFY(pixmap.isNull());
}

void Tst_ImageProvider::specialFileIsNoImage() {
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
    QVERIFY(provider().pixmap(pipe).isNull()); // and does not wait for a writer
    QVERIFY(provider().pixmap(QStringLiteral("/dev/zero")).isNull());
    QVERIFY(provider().pixmap(m_folder.path()).isNull());
}

void Tst_ImageProvider::currentImageIsServedWithoutAnotherLook() {
    const QString path = writeFile(QStringLiteral("current.png"), encoded(filled(QSize(5, 5), Qt::red)));
    const qint64 key = provider().pixmap(path).cacheKey();
    QVERIFY(QFile::remove(path));
    QCOMPARE(provider().pixmap(path).cacheKey(), key);
}

void Tst_ImageProvider::unknownPathLeavesTheCurrentImage() {
    const QString path = writeFile(QStringLiteral("kept.png"), encoded(filled(QSize(5, 5), Qt::red)));
    const qint64 key = provider().pixmap(path).cacheKey();
    QVERIFY(provider().pixmap(QStringLiteral("unknown")).isNull());
    QVERIFY(QFile::remove(path));
    QCOMPARE(provider().pixmap(path).cacheKey(), key);
}

void Tst_ImageProvider::removeDeletesFileAndMemory() {
    const QString path = writeFile(QStringLiteral("gone.png"), encoded(filled(QSize(5, 5), Qt::red)));
    QVERIFY(provider().insert(path, QPixmap::fromImage(filled(QSize(1024, 1024), Qt::red))));
    QVERIFY(!provider().pixmap(path).isNull());
    QVERIFY(provider().remove(path));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(provider().usedMegabytes(), 0.0);
    QVERIFY(provider().pixmap(path).isNull());
}

void Tst_ImageProvider::removeLeavesFilesOfRelativeNames() {
    const QString before = QDir::currentPath();
    QDir::setCurrent(m_folder.path());
    const QString path = writeFile(QStringLiteral("somebodys"), "x");
    QVERIFY(provider().insert(QStringLiteral("somebodys"), QPixmap(512, 512)));
    QVERIFY(provider().remove(QStringLiteral("somebodys")));
    QDir::setCurrent(before);
    QVERIFY(QFile::exists(path));
    QCOMPARE(provider().usedMegabytes(), 0.0);
}

void Tst_ImageProvider::removeOfNothing() {
    QVERIFY(!provider().remove(QString()));
    QVERIFY(provider().remove(QStringLiteral("unknown")));
    QCOMPARE(provider().usedMegabytes(), 0.0);
}

void Tst_ImageProvider::forgottenImageLeavesItsFile() {
    const QString path = writeFile(QStringLiteral("kept.png"), encoded(filled(QSize(5, 5), Qt::red)));
    QVERIFY(provider().insert(path, QPixmap::fromImage(filled(QSize(512, 512), Qt::red))));
    QCOMPARE(provider().pixmap(path).size(), QSize(5, 5));
    provider().forget(path);
    QCOMPARE(provider().usedMegabytes(), 0.0);
    // It is read again, as what it is now.
    writeFile(QStringLiteral("kept.png"), encoded(filled(QSize(7, 7), Qt::red)));
    QCOMPARE(provider().pixmap(path).size(), QSize(7, 7));
}

void Tst_ImageProvider::dropFromMemory() {
    const QString path = writeFile(QStringLiteral("stays.png"), encoded(filled(QSize(5, 5), Qt::red)));
    QVERIFY(provider().insert(path, QPixmap::fromImage(filled(QSize(512, 512), Qt::red))));
    QVERIFY(provider().dropFromMemory(path));
    QVERIFY(!provider().dropFromMemory(path));
    QCOMPARE(provider().usedMegabytes(), 0.0);
    QVERIFY(QFile::exists(path));
}

void Tst_ImageProvider::isFile_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("file") << writeFile(QStringLiteral("a.png"), "x") << true;
    QTest::newRow("absent") << m_folder.filePath(QStringLiteral("absent.png")) << false;
    QTest::newRow("relative") << QStringLiteral("a.png") << false;
    QTest::newRow("empty") << QString() << false;
}

void Tst_ImageProvider::isFile() {
    QFETCH(QString, path);
    QTEST(provider().isFile(path), "expected");
}

void Tst_ImageProvider::instanceIsOne() {
    QCOMPARE(ImageProvider::instance(), ImageProvider::instance());
}

QTEST_MAIN(Tst_ImageProvider)
#include "tst_imageprovider.moc"
