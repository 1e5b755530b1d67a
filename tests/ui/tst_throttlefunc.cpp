#include "ui/throttlefunc.h"

#include <QtTest>

#include <functional>

namespace {

constexpr int Interval = 33;
/// Longer than any test: the real timer stays quiet while the test plays clock and timer itself.
constexpr int Forever = 3600 * 1000;

/// A throttle whose time the test moves.
struct Stage {
    explicit Stage(int interval, bool trailing) : throttle([this] { onRun(); }, interval, trailing, nullptr) {
        throttle.setClock([this] { return now; });
    }
    void callAt(qint64 time) {
        now = time;
        throttle.call();
    }
    void timeOutAt(qint64 time) {
        now = time;
        QVERIFY(QMetaObject::invokeMethod(&throttle, "onTimeout"));
    }
    void onRun() {
        ++runs;
        now += runTime;
    }

    int runs = 0;
    qint64 now = 0;
    qint64 runTime = 0; ///< how long the callable takes
    ThrottleFunc throttle;
};

} // namespace

class Tst_ThrottleFunc : public QObject {
    Q_OBJECT
private slots:
    void firstCallRunsAtOnce_data();
    void firstCallRunsAtOnce();
    void callsInsideTheIntervalWait_data();
    void callsInsideTheIntervalWait();
    void trailingRunRenewsTheInterval();
    void intervalCountsFromTheEndOfATrailingRun();
    void intervalCountsFromTheStartOfALeadingRun();
    void quietIntervalEndsTheBurst();
    void withoutTrailingCallsAreDropped();
    void clockMovingBackIsInsideTheInterval();
    void singleCallRunsOnceInRealTime();
    void twoCallsRunTwiceInRealTime();
    void emptyCallableRaises();
    void failedRunDoesNotOpenTheInterval();
};

void Tst_ThrottleFunc::firstCallRunsAtOnce_data() {
    QTest::addColumn<bool>("trailing");
    QTest::newRow("trailing") << true;
    QTest::newRow("not trailing") << false;
}

void Tst_ThrottleFunc::firstCallRunsAtOnce() {
    QFETCH(bool, trailing);
    Stage stage(Forever, trailing);
    stage.callAt(0); // also when the clock says less than the interval since the epoch
    QCOMPARE(stage.runs, 1);
}

void Tst_ThrottleFunc::callsInsideTheIntervalWait_data() {
    QTest::addColumn<qint64>("second");
    QTest::addColumn<int>("runs");
    QTest::newRow("at the same time") << qint64(1000) << 1;
    QTest::newRow("10 ms later") << qint64(1010) << 1;
    QTest::newRow("last inside") << qint64(1000 + Forever - 1) << 1;
    QTest::newRow("first outside") << qint64(1000 + Forever) << 2;
}

void Tst_ThrottleFunc::callsInsideTheIntervalWait() {
    QFETCH(qint64, second);
    for (bool trailing : {true, false}) {
        Stage stage(Forever, trailing);
        stage.callAt(1000);
        stage.callAt(second);
        QTEST(stage.runs, "runs");
    }
}

void Tst_ThrottleFunc::trailingRunRenewsTheInterval() {
    Stage stage(Forever, true);
    stage.callAt(0);
    for (int i = 1; i <= 5; ++i)
        stage.callAt(i);
    stage.timeOutAt(Forever);
    QCOMPARE(stage.runs, 2); // five calls became one run
    stage.callAt(Forever + 1);
    QCOMPARE(stage.runs, 2); // inside the renewed interval
    stage.timeOutAt(2LL * Forever);
    QCOMPARE(stage.runs, 3);
}

void Tst_ThrottleFunc::intervalCountsFromTheEndOfATrailingRun() {
    Stage stage(Forever, true);
    stage.callAt(0);
    stage.callAt(1);
    stage.runTime = 500;
    stage.timeOutAt(Forever); // ends at Forever + 500
    stage.callAt(2LL * Forever + 499);
    QCOMPARE(stage.runs, 2);
    stage.callAt(2LL * Forever + 500);
    QCOMPARE(stage.runs, 3);
}

void Tst_ThrottleFunc::intervalCountsFromTheStartOfALeadingRun() {
    Stage stage(Forever, true);
    stage.runTime = 500;
    stage.callAt(0);
    stage.callAt(Forever - 1);
    QCOMPARE(stage.runs, 1);
    stage.callAt(Forever);
    QCOMPARE(stage.runs, 2);
}

void Tst_ThrottleFunc::quietIntervalEndsTheBurst() {
    Stage stage(Forever, true);
    stage.callAt(0);
    stage.timeOutAt(5);
    QCOMPARE(stage.runs, 1);
    stage.callAt(6); // the timer, not the clock, has ended the burst
    QCOMPARE(stage.runs, 2);
}

void Tst_ThrottleFunc::withoutTrailingCallsAreDropped() {
    int runs = 0;
    ThrottleFunc throttle([&runs] { ++runs; }, 5, false, nullptr);
    qint64 now = 0;
    throttle.setClock([&now] { return now; });
    throttle.call();
    now = 4;
    throttle.call();
    QTest::qWait(30); // no timer brings the dropped call back, nor does one end the interval
    QCOMPARE(runs, 1);
    throttle.call();
    QCOMPARE(runs, 1);
    now = 5;
    throttle.call();
    QCOMPARE(runs, 2);
}

void Tst_ThrottleFunc::clockMovingBackIsInsideTheInterval() {
    Stage stage(Forever, true);
    stage.callAt(10LL * Forever);
    stage.callAt(1);
    QCOMPARE(stage.runs, 1);
    stage.timeOutAt(2);
    QCOMPARE(stage.runs, 2); // the call was kept for the end of the interval
}

void Tst_ThrottleFunc::singleCallRunsOnceInRealTime() {
    int runs = 0;
    ThrottleFunc throttle([&runs] { ++runs; }, Interval, true, nullptr);
    throttle.call();
    QCOMPARE(runs, 1);
    QCOMPARE(throttle.findChild<QTimer *>()->interval(), Interval);
    QTest::qWait(4 * Interval);
    QCOMPARE(runs, 1);
    throttle.call();
    QCOMPARE(runs, 2);
}

void Tst_ThrottleFunc::twoCallsRunTwiceInRealTime() {
    QVector<qint64> times;
    QElapsedTimer timer;
    ThrottleFunc throttle([&] { times.append(timer.elapsed()); }, Interval, true, nullptr);
    qint64 now = 0;
    throttle.setClock([&now] { return now; });
    timer.start();
    throttle.call();
    now = 10;
    throttle.call();
    QCOMPARE(times.size(), 1);
    QTRY_COMPARE(times.size(), 2);
    QVERIFY2(times[1] >= Interval - 1, qPrintable(QString::number(times[1])));
    // How late a run may come is the machine's affair; what was asked for is not.
    QCOMPARE(throttle.findChild<QTimer *>()->interval(), Interval);
    QTest::qWait(4 * Interval);
    QCOMPARE(times.size(), 2);
}

void Tst_ThrottleFunc::emptyCallableRaises() {
    ThrottleFunc throttle({}, Interval, true, nullptr);
    QVERIFY_EXCEPTION_THROWN(throttle.call(), std::bad_function_call);
}

void Tst_ThrottleFunc::failedRunDoesNotOpenTheInterval() {
    ThrottleFunc throttle({}, Interval, true, nullptr);
    QVERIFY_EXCEPTION_THROWN(throttle.call(), std::bad_function_call);
    QVERIFY_EXCEPTION_THROWN(throttle.call(), std::bad_function_call);
}

QTEST_GUILESS_MAIN(Tst_ThrottleFunc)
#include "tst_throttlefunc.moc"
