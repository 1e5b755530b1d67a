#include "platform/namedlock.h"

#include <QtTest>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

const QString &lockName() {
    static const QString name = QStringLiteral("tst_namedlock");
    return name;
}

/// A process that takes the lock and keeps it until it is killed, perhaps after starting a program that
/// outlives it.
class Holder {
public:
    enum Program { NoProgram, StartsProgram };

    explicit Holder(Program program = NoProgram) {
        std::array<int, 2> ready;
        if (::pipe(ready.data()) != 0)
            return;
        m_pid = ::fork();
        if (m_pid == 0) {
            ::setpgid(0, 0);
            platform::NamedLock lock(lockName());
            const char answer = lock.lock() ? '+' : '-';
            if (program == StartsProgram && ::fork() == 0)
                ::execlp("sleep", "sleep", "20", nullptr);
            if (::write(ready[1], &answer, 1) != 1)
                ::_exit(1);
            for (;;)
                ::pause();
        }
        char answer = 0;
        m_group = m_pid;
        m_holds = ::read(ready[0], &answer, 1) == 1 && answer == '+';
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~Holder() {
        end();
        if (m_group > 0)
            ::kill(-m_group, SIGKILL);
    }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

    bool holds() const { return m_holds; }
    void end() {
        if (m_pid <= 0)
            return;
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }

private:
    pid_t m_pid = -1;
    pid_t m_group = -1;
    bool m_holds = false;
};

QString lockFile() {
    return platform::privateRuntimeFolder() + QLatin1Char('/') + lockName() + QStringLiteral(".lock");
}

} // namespace

class Tst_NamedLock : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { QFile::remove(lockFile()); }

    void excludesAnotherProcess();
    void excludesAnotherObject();
    void killedHolderGivesItBack();
    void waitsForTheHolder();
    void givesUpOnAHolderThatIsStopped_data();
    void givesUpOnAHolderThatIsStopped();
    void isNotRecursive();
    void otherNamesAreOtherLocks();
    void goesWithItsObject();
    void isNotInheritedByPrograms();
    void followsNoLink();
    void survivesARemovedFile();
    void namesOutsideTheFolderAreRefused_data();
    void namesOutsideTheFolderAreRefused();
};

void Tst_NamedLock::excludesAnotherProcess() {
    Holder holder;
    QVERIFY(holder.holds());
    platform::NamedLock lock(lockName());
    QVERIFY(!lock.tryLock());
}

void Tst_NamedLock::excludesAnotherObject() {
    platform::NamedLock first(lockName());
    platform::NamedLock second(lockName());
    QVERIFY(first.tryLock());
    QVERIFY(!second.tryLock());
    first.unlock();
    QVERIFY(second.tryLock());
}

void Tst_NamedLock::killedHolderGivesItBack() {
    Holder holder;
    QVERIFY(holder.holds());
    platform::NamedLock lock(lockName());
    QVERIFY(!lock.tryLock());
    holder.end();
    QVERIFY(lock.tryLock());
}

void Tst_NamedLock::waitsForTheHolder() {
    platform::NamedLock lock(lockName());
    QVERIFY(lock.lock());
    std::array<int, 2> result;
    QCOMPARE(::pipe(result.data()), 0);
    const pid_t waiter = ::fork();
    if (waiter == 0) {
        ::close(result[0]);
        platform::NamedLock mine(lockName());
        const char answer = mine.lock() ? '+' : '-';
        ::_exit(::write(result[1], &answer, 1) == 1 ? 0 : 1);
    }
    ::close(result[1]);
    struct pollfd answered = {result[0], POLLIN, 0};
    QCOMPARE(::poll(&answered, 1, 100), 0);
    lock.unlock();
    char answer = 0;
    QCOMPARE(::read(result[0], &answer, 1), ssize_t(1));
    QCOMPARE(answer, '+');
    ::close(result[0]);
    ::waitpid(waiter, nullptr, 0);
}

void Tst_NamedLock::givesUpOnAHolderThatIsStopped_data() {
    QTest::addColumn<int>("limit");
    QTest::newRow("short") << 100;
    QTest::newRow("usual") << platform::NamedLock::TimeLimitMs;
}

void Tst_NamedLock::givesUpOnAHolderThatIsStopped() {
    QFETCH(int, limit);
    Holder holder;
    QVERIFY(holder.holds());
    platform::NamedLock lock(lockName());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!(limit == 1000 ? lock.lock() : lock.lock(limit)));
    QVERIFY(timer.elapsed() >= limit);
    QVERIFY(timer.elapsed() < limit + 3000);
    holder.end();
    QVERIFY(lock.lock());
}

void Tst_NamedLock::isNotRecursive() {
    platform::NamedLock lock(lockName());
    QVERIFY(lock.lock());
    QVERIFY(!lock.lock());
    QVERIFY(!lock.tryLock());
    lock.unlock();
    QVERIFY(lock.tryLock());
}

void Tst_NamedLock::otherNamesAreOtherLocks() {
    platform::NamedLock lock(lockName());
    platform::NamedLock other(lockName() + QStringLiteral("2"));
    QVERIFY(lock.lock());
    QVERIFY(other.tryLock());
}

void Tst_NamedLock::goesWithItsObject() {
    {
        platform::NamedLock lock(lockName());
        QVERIFY(lock.lock());
    }
    platform::NamedLock next(lockName());
    QVERIFY(next.tryLock());
}

void Tst_NamedLock::isNotInheritedByPrograms() {
    Holder holder(Holder::StartsProgram);
    QVERIFY(holder.holds());
    holder.end();
    platform::NamedLock lock(lockName());
    bool locked = false;
    QTRY_VERIFY(locked || (locked = lock.tryLock()));
}

void Tst_NamedLock::followsNoLink() {
    const QString target = platform::privateRuntimeFolder() + QStringLiteral("/elsewhere");
    QVERIFY(QFile::link(target, lockFile()));
    platform::NamedLock lock(lockName());
    QVERIFY(!lock.lock());
    QVERIFY(!QFile::exists(target));
}

void Tst_NamedLock::survivesARemovedFile() {
    // One waits on a file that is removed while it waits: it must end up with the lock of the new file.
    platform::NamedLock holder(lockName());
    QVERIFY(holder.lock());
    std::array<int, 2> result;
    QCOMPARE(::pipe(result.data()), 0);
    const pid_t waiter = ::fork();
    if (waiter == 0) {
        platform::NamedLock mine(lockName());
        const char answer = mine.lock() ? '+' : '-';
        if (::write(result[1], &answer, 1) != 1)
            ::_exit(1);
        for (;;)
            ::pause();
    }
    struct pollfd answered = {result[0], POLLIN, 0};
    QCOMPARE(::poll(&answered, 1, 100), 0);
    QVERIFY(QFile::remove(lockFile()));
    holder.unlock();
    char answer = 0;
    QCOMPARE(::read(result[0], &answer, 1), ssize_t(1));
    QCOMPARE(answer, '+');
    platform::NamedLock late(lockName());
    const bool waiterHoldsIt = !late.tryLock();
    ::kill(waiter, SIGKILL);
    ::waitpid(waiter, nullptr, 0);
    ::close(result[0]);
    ::close(result[1]);
    QVERIFY(waiterHoldsIt);
}

void Tst_NamedLock::namesOutsideTheFolderAreRefused_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("path") << QStringLiteral("../elsewhere");
}

void Tst_NamedLock::namesOutsideTheFolderAreRefused() {
    QFETCH(QString, name);
    platform::NamedLock lock(name);
    QVERIFY(!lock.lock());
    QVERIFY(!lock.tryLock());
}

QTEST_GUILESS_MAIN(Tst_NamedLock)
#include "tst_namedlock.moc"
