#include "ui/debouncefunc.h"

#include <QtTest>

class Tst_DebounceFunc : public QObject {
    Q_OBJECT
private slots:
    void burstRunsOnceAfterItsEnd();
    void eachQuietTimeGivesARun();
    void callRestartsTheTime();
    void runMayCallAgain();
    void emptyCallableDoesNothing();
    void endsWithItsParent();
};

void Tst_DebounceFunc::burstRunsOnceAfterItsEnd() {
    constexpr int interval = 33;
    int runs = 0;
    QElapsedTimer sinceLastCall;
    qint64 ranAfter = -1;
    DebounceFunc debounce(
        [&] {
            ++runs;
            ranAfter = sinceLastCall.elapsed();
        },
        interval, nullptr);
    for (int i = 0; i < 10; ++i) {
        QThread::msleep(10); // the event loop stands still, so the timer has no chance however slow this is
        sinceLastCall.start();
        debounce.call();
        QCOMPARE(runs, 0);
    }
    QTRY_COMPARE(runs, 1);
    QVERIFY2(ranAfter >= interval, qPrintable(QString::number(ranAfter)));
    // How late a run may come is the machine's affair; what was asked for is not.
    QCOMPARE(debounce.findChild<QTimer *>()->interval(), interval);
    QTest::qWait(3 * interval);
    QCOMPARE(runs, 1);
}

void Tst_DebounceFunc::eachQuietTimeGivesARun() {
    int runs = 0;
    DebounceFunc debounce([&runs] { ++runs; }, 5, nullptr);
    debounce.call();
    QTRY_COMPARE(runs, 1);
    debounce.call();
    QTRY_COMPARE(runs, 2);
}

void Tst_DebounceFunc::callRestartsTheTime() {
    constexpr int interval = 300;
    int runs = 0;
    DebounceFunc debounce([&runs] { ++runs; }, interval, nullptr);
    debounce.call();
    QThread::msleep(200);
    QElapsedTimer sinceSecond;
    sinceSecond.start();
    debounce.call();
    QThread::msleep(150); // the first call's time has passed, the second one's has not
    QCoreApplication::processEvents();
    const int runsBeforeTheEnd = runs;
    if (sinceSecond.elapsed() < interval)
        QCOMPARE(runsBeforeTheEnd, 0);
    QTRY_COMPARE(runs, 1);
}

void Tst_DebounceFunc::runMayCallAgain() {
    int runs = 0;
    DebounceFunc *self = nullptr;
    DebounceFunc debounce(
        [&] {
            if (++runs < 3)
                self->call();
        },
        1, nullptr);
    self = &debounce;
    debounce.call();
    QTRY_COMPARE(runs, 3);
}

void Tst_DebounceFunc::emptyCallableDoesNothing() {
    DebounceFunc debounce({}, 0, nullptr);
    debounce.call();
    QVERIFY(QMetaObject::invokeMethod(&debounce, "onTimeout"));
    QTest::qWait(5);
}

void Tst_DebounceFunc::endsWithItsParent() {
    int runs = 0;
    auto parent = std::make_unique<QObject>();
    auto *debounce = new DebounceFunc([&runs] { ++runs; }, 1, parent.get());
    debounce->call();
    parent.reset();
    QTest::qWait(10);
    QCOMPARE(runs, 0);
}

QTEST_GUILESS_MAIN(Tst_DebounceFunc)
#include "tst_debouncefunc.moc"
