#include "platform/linux/linuxservices.h"
#include "platform/sessionend.h"

#include <QtTest>

#include <csignal>

namespace {

/// Sends a signal to this very thread, so that it is handled before this returns.
void raiseSignal(int number) {
    ::raise(number);
}

bool isDefault(int number) {
    struct sigaction action = {};
    ::sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_DFL;
}

} // namespace

class Tst_SessionEnd : public QObject {
    Q_OBJECT
private slots:
    void init();
    void runsTheHandlerInTheEventLoop_data();
    void runsTheHandlerInTheEventLoop();
    void severalSignalsRunItAtLeastOnce();
    void laterSignalsRunItAgain();
    void theLastHandlerCounts();
    void leavesIgnoredSignalsIgnored();
    void givesTheSignalsBack();
    void doesNothingBeforeItIsAsked();
};

void Tst_SessionEnd::init() {
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::signal(number, SIG_DFL);
}

void Tst_SessionEnd::runsTheHandlerInTheEventLoop_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void Tst_SessionEnd::runsTheHandlerInTheEventLoop() {
    QFETCH(int, number);
    const auto sessionEnd = makeSessionEnd();
    int calls = 0;
    sessionEnd->onTerminate([&calls] { ++calls; });
    raiseSignal(number);
    QCOMPARE(calls, 0);
    QTRY_COMPARE(calls, 1);
}

void Tst_SessionEnd::severalSignalsRunItAtLeastOnce() {
    const auto sessionEnd = makeSessionEnd();
    int calls = 0;
    sessionEnd->onTerminate([&calls] { ++calls; });
    // More than a pipe holds: the handler must never wait for room.
    for (int i = 0; i < 100000; ++i)
        raiseSignal(SIGTERM);
    QTRY_VERIFY(calls >= 1);
}

void Tst_SessionEnd::laterSignalsRunItAgain() {
    const auto sessionEnd = makeSessionEnd();
    int calls = 0;
    sessionEnd->onTerminate([&calls] { ++calls; });
    raiseSignal(SIGTERM);
    QTRY_COMPARE(calls, 1);
    raiseSignal(SIGHUP);
    QTRY_COMPARE(calls, 2);
}

void Tst_SessionEnd::theLastHandlerCounts() {
    const auto sessionEnd = makeSessionEnd();
    int first = 0;
    int second = 0;
    sessionEnd->onTerminate([&first] { ++first; });
    sessionEnd->onTerminate([&second] { ++second; });
    raiseSignal(SIGTERM);
    QTRY_COMPARE(second, 1);
    QCOMPARE(first, 0);
}

void Tst_SessionEnd::leavesIgnoredSignalsIgnored() {
    ::signal(SIGHUP, SIG_IGN);
    const auto sessionEnd = makeSessionEnd();
    int calls = 0;
    sessionEnd->onTerminate([&calls] { ++calls; });
    raiseSignal(SIGHUP);
    raiseSignal(SIGTERM);
    QTRY_COMPARE(calls, 1);
    struct sigaction action = {};
    ::sigaction(SIGHUP, nullptr, &action);
    QVERIFY(action.sa_handler == SIG_IGN);
}

void Tst_SessionEnd::givesTheSignalsBack() {
    {
        const auto sessionEnd = makeSessionEnd();
        sessionEnd->onTerminate([] {});
        QVERIFY(!isDefault(SIGTERM));
    }
    QVERIFY(isDefault(SIGTERM));
    QVERIFY(isDefault(SIGINT));
    QVERIFY(isDefault(SIGHUP));
}

void Tst_SessionEnd::doesNothingBeforeItIsAsked() {
    const auto sessionEnd = makeSessionEnd();
    QVERIFY(isDefault(SIGTERM));
}

QTEST_GUILESS_MAIN(Tst_SessionEnd)
#include "tst_sessionend.moc"
