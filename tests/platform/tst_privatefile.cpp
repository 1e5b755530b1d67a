#include "platform/privatefile.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace {

constexpr qint64 Limit = 4096;

/// A folder with a full file in it, locked as another process does that begins the file anew.
class LockedFolder {
public:
    LockedFolder() : m_lock(::open(QFile::encodeName(m_folder.path()).constData(), O_RDONLY | O_CLOEXEC)) {
        QFile file(path());
        m_isReady = file.open(QIODevice::WriteOnly) && file.resize(Limit) && ::flock(m_lock, LOCK_EX) == 0;
    }
    ~LockedFolder() { unlock(); }
    LockedFolder(const LockedFolder &) = delete;
    LockedFolder &operator=(const LockedFolder &) = delete;

    bool isReady() const { return m_isReady; }
    QString path() const { return m_folder.filePath(QStringLiteral("log")); }
    QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be opened)");
    }
    void unlock() {
        if (m_lock >= 0)
            ::close(m_lock);
        m_lock = -1;
    }

private:
    QTemporaryDir m_folder;
    int m_lock;
    bool m_isReady;
};

} // namespace

class Tst_PrivateFile : public QObject {
    Q_OBJECT
private slots:
    void writersThatMeetAFullFileKeepEachOthersLines();
    void whoWaitsForTheLockKeepsItsLine();
    void emptyPathIsRefused();
    // The last one: who has waited in vain waits no more for a while.
    void lockOfAStoppedProcessIsWaitedForOnce();
};

void Tst_PrivateFile::writersThatMeetAFullFileKeepEachOthersLines() {
    constexpr int rounds = 300;
    constexpr int writers = 4;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    for (int round = 0; round < rounds; ++round) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(Limit));
        file.close();
        std::atomic<int> waiting{writers};
        std::vector<std::thread> threads;
        for (int i = 0; i < writers; ++i) {
            threads.emplace_back([&] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield(); // so that all of them see the full file
                platform::appendToPrivateFile(path, "line\n", Limit);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("line\n").repeated(writers));
    }
}

void Tst_PrivateFile::whoWaitsForTheLockKeepsItsLine() {
    LockedFolder folder;
    QVERIFY(folder.isReady());
    std::atomic<bool> isWriting{false};
    std::thread writer([&] {
        isWriting = true;
        platform::appendToPrivateFile(folder.path(), "line\n", Limit);
    });
    while (!isWriting)
        std::this_thread::yield();
    QTest::qSleep(50); // it has found the full file by now, as a rule
    const bool isRemoved = QFile::remove(folder.path());
    folder.unlock();
    writer.join();
    QVERIFY(isRemoved);
    QCOMPARE(folder.content(), QByteArray("line\n"));
}

void Tst_PrivateFile::emptyPathIsRefused() {
    QVERIFY(!platform::appendToPrivateFile(QString(), "line\n", Limit));
}

void Tst_PrivateFile::lockOfAStoppedProcessIsWaitedForOnce() {
    constexpr int lines = 20;
    LockedFolder folder;
    QVERIFY(folder.isReady());
    auto written = std::async(std::launch::async, [&folder] {
        int count = 0;
        for (int i = 0; i < lines; ++i)
            count += platform::appendToPrivateFile(folder.path(), "line\n", Limit) ? 1 : 0;
        return count;
    });
    // One wait is a second, and all of them twenty.
    const bool isInTime = written.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    folder.unlock();
    QCOMPARE(written.get(), lines);
    QVERIFY(isInTime);
    QCOMPARE(folder.content(), QByteArray(Limit, '\0') + QByteArray("line\n").repeated(lines));
    // Once the lock is free, the next line begins the file anew.
    QVERIFY(platform::appendToPrivateFile(folder.path(), "next\n", Limit));
    QCOMPARE(folder.content(), QByteArray("next\n"));
}

QTEST_GUILESS_MAIN(Tst_PrivateFile)
#include "tst_privatefile.moc"
