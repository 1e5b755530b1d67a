#include "canvas/items/segmentindex.h"

#include <QRandomGenerator>
#include <QtTest>

using Rects = QVector<QRectF>;

class Tst_SegmentIndex : public QObject {
    Q_OBJECT
private slots:
    void nothingIsNearAtFirst();
    void findsEachOnceInOrder();
    void touchingIsNear();
    void rectangleWithoutWidthIsFound();
    void agreesWithASearchOfAll_data();
    void agreesWithASearchOfAll();
};

void Tst_SegmentIndex::nothingIsNearAtFirst() {
    const SegmentIndex index;
    QCOMPARE(index.count(), 0);
    QCOMPARE(index.near(QRectF(-1e4, -1e4, 2e4, 2e4)), Rects());
}

void Tst_SegmentIndex::findsEachOnceInOrder() {
    SegmentIndex index;
    const Rects rects{{0, 0, 3000, 2000}, {100, 100, 300, 10}, {50, 50, 100, 100}, {5000, 50, 1, 1}};
    for (const QRectF &rect : rects)
        index.add(rect);
    QCOMPARE(index.count(), 4);
    QCOMPARE(index.near(QRectF(0, 0, 1000, 1000)), rects.mid(0, 3));
    QCOMPARE(index.near(QRectF(60, 60, 1, 1)), (Rects{rects.at(0), rects.at(2)}));
}

void Tst_SegmentIndex::touchingIsNear() {
    SegmentIndex index;
    const QRectF rect(64, 64, 64, 64); // cell borders on all sides
    index.add(rect);
    for (const QRectF &area : {QRectF(60, 100, 4, 1), QRectF(128, 100, 4, 1), QRectF(100, 60, 1, 4),
                               QRectF(100, 128, 1, 4), QRectF(128, 128, 0, 0)})
        QCOMPARE(index.near(area), Rects{rect});
    for (const QRectF &area : {QRectF(60, 100, 3.9, 1), QRectF(128.1, 100, 4, 1)})
        QCOMPARE(index.near(area), Rects());
}

void Tst_SegmentIndex::rectangleWithoutWidthIsFound() {
    SegmentIndex index;
    index.add(QRectF(10, 10, 0, 40));
    QCOMPARE(index.near(QRectF(9, 20, 3, 3)).size(), 1);
}

void Tst_SegmentIndex::agreesWithASearchOfAll_data() {
    QTest::addColumn<int>("longest");
    QTest::newRow("small") << 8;
    QTest::newRow("some cells each") << 200;
    QTest::newRow("too large for cells") << 2000;
}

void Tst_SegmentIndex::agreesWithASearchOfAll() {
    QFETCH(int, longest);
    QRandomGenerator random(3);
    const auto rect = [&](int side) {
        return QRectF(random.bounded(-500, 4000), random.bounded(-500, 2500), random.bounded(side),
                      random.bounded(side));
    };
    SegmentIndex index;
    Rects all;
    for (int i = 0; i < 400; ++i) {
        all.append(rect(longest));
        index.add(all.last());
    }
    int found = 0;
    for (int i = 0; i < 400; ++i) {
        const QRectF area = rect(100);
        Rects expected;
        for (const QRectF &one : qAsConst(all)) {
            if (one.left() <= area.right() && area.left() <= one.right() && one.top() <= area.bottom() &&
                area.top() <= one.bottom())
                expected.append(one);
        }
        QCOMPARE(index.near(area), expected);
        found += expected.size();
    }
    QVERIFY(found > 20);
}

QTEST_GUILESS_MAIN(Tst_SegmentIndex)
#include "tst_segmentindex.moc"
