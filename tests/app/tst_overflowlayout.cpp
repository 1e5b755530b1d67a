#include "app/overflowlayout.h"

#include <QtTest>

Q_DECLARE_METATYPE(OverflowRoom)

class Tst_OverflowLayout : public QObject {
    Q_OBJECT
private slots:
    void buttonsLeaveFromTheRight_data();
    void buttonsLeaveFromTheRight();
    void wideButtonTakesThoseBehindItAlong();
    void emptyToolbar();
};

// Three buttons of 60 with a separator of 9 behind the second, 4 between any two. What always stays takes
// 60 + 4 + 9 + 4 = 77 of the width and once more 9 + 4 = 13, so that the buttons end at 77, 141 and 218.
void Tst_OverflowLayout::buttonsLeaveFromTheRight_data() {
    QTest::addColumn<int>("toolbar");
    QTest::addColumn<int>("banner");
    QTest::addColumn<int>("buttons");
    QTest::newRow("wide") << 1000 << 0 << 3;
    QTest::newRow("all, to the pixel") << 77 + 219 << 0 << 3;
    QTest::newRow("end at the edge") << 77 + 218 << 0 << 2;
    QTest::newRow("two, to the pixel") << 77 + 142 << 0 << 2;
    QTest::newRow("one") << 77 + 141 << 0 << 1;
    QTest::newRow("none") << 77 + 77 << 0 << 0;
    QTest::newRow("no room at all") << 0 << 0 << 0;
    QTest::newRow("banner leaves all") << 77 + 219 + 300 << 300 << 3;
    QTest::newRow("banner takes the room of one") << 77 + 219 + 299 << 300 << 2;
}

void Tst_OverflowLayout::buttonsLeaveFromTheRight() {
    QFETCH(int, toolbar);
    QFETCH(int, banner);
    QFETCH(int, buttons);
    const QVector<OverflowEntry> entries{{60, true}, {60, true}, {9, false}, {60, true}};
    const QVector<bool> expected{buttons > 0, buttons > 1, true, buttons > 2};
    QCOMPARE(entriesThatStay(entries, {toolbar, banner, 60, 9, 4}), expected);
}

void Tst_OverflowLayout::wideButtonTakesThoseBehindItAlong() {
    const QVector<OverflowEntry> entries{{60, true}, {200, true}, {10, true}};
    QCOMPARE(entriesThatStay(entries, {300, 0, 60, 9, 4}), (QVector<bool>{true, false, false}));
}

void Tst_OverflowLayout::emptyToolbar() {
    QVERIFY(entriesThatStay({}, {300, 0, 60, 9, 4}).isEmpty());
}

QTEST_MAIN(Tst_OverflowLayout)
#include "tst_overflowlayout.moc"
