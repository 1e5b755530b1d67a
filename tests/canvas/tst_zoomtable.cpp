#include "canvas/zoomtable.h"

#include <QtTest>

class Tst_ZoomTable : public QObject {
    Q_OBJECT
private slots:
    void scaleOfStep_data();
    void scaleOfStep();
    void everyStepScalesMoreThanTheOneBefore();
    void everyStepFollowsTheTable();
    void stepToFit_data();
    void stepToFit();
    void percentIsTheTruncatedProduct_data();
    void percentIsTheTruncatedProduct();
};

void Tst_ZoomTable::scaleOfStep_data() {
    QTest::addColumn<int>("step");
    QTest::addColumn<double>("scale");
    QTest::newRow("lowest") << 0 << 0.10;
    QTest::newRow("rounded down from 14.5") << 1 << 0.15;
    QTest::newRow("19 %") << 2 << 0.19;
    QTest::newRow("37 %") << 6 << 0.37;
    QTest::newRow("half way") << 10 << 0.55;
    QTest::newRow("below 100 %, rounded up from 95.5") << 19 << 0.96;
    QTest::newRow("100 %") << 20 << 1.00;
    QTest::newRow("above 100 %") << 21 << 1.15;
    QTest::newRow("250 %") << 30 << 2.50;
    QTest::newRow("last fine step") << 39 << 3.85;
    QTest::newRow("400 %") << 40 << 4.00;
    QTest::newRow("first coarse step") << 41 << 5.00;
    QTest::newRow("last step") << 44 << 8.00;
    QTest::newRow("beyond the last") << 50 << 8.00;
    QTest::newRow("below the first") << -3 << 0.10;
}

void Tst_ZoomTable::scaleOfStep() {
    QFETCH(int, step);
    QFETCH(double, scale);
    QCOMPARE(computeZoom(step), scale);
}

void Tst_ZoomTable::everyStepScalesMoreThanTheOneBefore() {
    for (int step = ZoomStep::Lowest; step < ZoomStep::Highest; ++step)
        QVERIFY2(computeZoom(step) < computeZoom(step + 1), qPrintable(QString::number(step)));
}

// In whole numbers: tenths of a per cent, rounded half up.
void Tst_ZoomTable::everyStepFollowsTheTable() {
    for (int step = 0; step <= 44; ++step) {
        int tenths;
        if (step < 20)
            tenths = 100 + 45 * step;
        else if (step <= 40)
            tenths = 1000 + 150 * (step - 20);
        else
            tenths = 4000 + 1000 * (step - 40);
        QCOMPARE(computeZoom(step), (tenths + 5) / 10 / 100.0);
    }
}

void Tst_ZoomTable::stepToFit_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("step");
    QTest::newRow("smallest") << 0.1 << 0;
    QTest::newRow("half") << 0.5 << 8;           // 8.9 steps
    QTest::newRow("just below 1") << 0.99 << 19; // 19.8 steps
}

void Tst_ZoomTable::stepToFit() {
    QFETCH(double, scale);
    QFETCH(int, step);
    QCOMPARE(zoomStepToFit(scale), step);
}

void Tst_ZoomTable::percentIsTheTruncatedProduct_data() {
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("percent");
    QTest::newRow("lowest") << 0 << 10;
    QTest::newRow("rounded up by the table") << 19 << 96;
    QTest::newRow("100 %") << 20 << 100;
    QTest::newRow("1.15 lies just below its decimal") << 21 << 114;
    QTest::newRow("1.30 does not") << 22 << 130;
    QTest::newRow("highest") << 44 << 800;
}

void Tst_ZoomTable::percentIsTheTruncatedProduct() {
    QFETCH(int, step);
    QFETCH(int, percent);
    QCOMPARE(shownPercent(computeZoom(step)), percent);
}

QTEST_APPLESS_MAIN(Tst_ZoomTable)
#include "tst_zoomtable.moc"
