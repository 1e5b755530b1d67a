#include "platform/linux/descriptor.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <future>

namespace {

int openNull() {
    return ::open("/dev/null", O_RDWR | O_CLOEXEC);
}

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

/// Interrupts what this thread waits for every millisecond, as a profiler or a debugger does.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGALRM, &action, &m_before); // without SA_RESTART
        setInterval(1000);
    }
    ~Interruptions() {
        setInterval(0);
        ::sigaction(SIGALRM, &m_before, nullptr);
    }
    Interruptions(const Interruptions &) = delete;
    Interruptions &operator=(const Interruptions &) = delete;

private:
    static void setInterval(int microseconds) {
        const itimerval interval{{0, microseconds}, {0, microseconds}};
        ::setitimer(ITIMER_REAL, &interval, nullptr);
    }
    struct sigaction m_before = {};
};

/// Everything that comes out of the pipe, taken slowly.
QByteArray readSlowly(int pipe) {
    sigset_t alarm;
    ::sigemptyset(&alarm);
    ::sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_BLOCK, &alarm, nullptr);
    QByteArray all;
    QByteArray part(30000, Qt::Uninitialized);
    for (ssize_t count = 1; count > 0;) {
        QTest::qSleep(2);
        count = ::read(pipe, part.data(), std::size_t(part.size()));
        all.append(part.constData(), int(std::max<ssize_t>(count, 0)));
    }
    return all;
}

} // namespace

class Tst_Descriptor : public QObject {
    Q_OBJECT
private slots:
    void closesWhatItOwns();
    void resetClosesTheFormer();
    void releaseGivesItAway();
    void nothingIsNotValid();
    void writesAllInSpiteOfInterruptions();
    void failedWriteIsTold_data();
    void failedWriteIsTold();
};

void Tst_Descriptor::closesWhatItOwns() {
    const int number = openNull();
    {
        const Descriptor owner(number);
        QVERIFY(owner.isValid());
        QCOMPARE(owner.get(), number);
        QVERIFY(isOpen(number));
    }
    QVERIFY(!isOpen(number));
}

void Tst_Descriptor::resetClosesTheFormer() {
    const int first = openNull();
    const int second = openNull();
    Descriptor owner(first);
    owner.reset(second);
    QVERIFY(!isOpen(first));
    QVERIFY(isOpen(second));
    owner.reset();
    QVERIFY(!isOpen(second));
    QVERIFY(!owner.isValid());
}

void Tst_Descriptor::releaseGivesItAway() {
    const int number = openNull();
    {
        Descriptor owner(number);
        QCOMPARE(owner.release(), number);
        QVERIFY(!owner.isValid());
    }
    QVERIFY(isOpen(number));
    ::close(number);
}

void Tst_Descriptor::nothingIsNotValid() {
    QVERIFY(!Descriptor(-1).isValid());
    QVERIFY(Descriptor(::dup(STDIN_FILENO)).isValid());
}

void Tst_Descriptor::writesAllInSpiteOfInterruptions() {
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += QByteArray::number(i);
    int ends[2];
    QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
    const Descriptor out(ends[0]);
    Descriptor in(ends[1]);
    auto read = std::async(std::launch::async, readSlowly, out.get());
    bool isWritten = false;
    {
        const Interruptions interruptions;
        isWritten = platform::writeAll(in.get(), bytes.constData(), std::size_t(bytes.size()));
    }
    in.reset();
    QVERIFY(read.get() == bytes);
    QVERIFY(isWritten);
}

void Tst_Descriptor::failedWriteIsTold_data() {
    QTest::addColumn<QByteArray>("device");
    QTest::newRow("full disk") << QByteArray("/dev/full");
    QTest::newRow("nothing open") << QByteArray("/nonexistent");
}

void Tst_Descriptor::failedWriteIsTold() {
    QFETCH(QByteArray, device);
    const Descriptor file(::open(device.constData(), O_WRONLY | O_CLOEXEC));
    QVERIFY(!platform::writeAll(file.get(), "text", 4));
    QVERIFY(platform::writeAll(file.get(), "", 0));
}

QTEST_GUILESS_MAIN(Tst_Descriptor)
#include "tst_descriptor.moc"
