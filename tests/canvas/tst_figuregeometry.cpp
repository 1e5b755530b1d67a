#include "canvas/items/figuregeometry.h"

#include <QPainterPath>
#include <QtTest>

#include <cmath>

namespace {

bool near(const QPointF &a, const QPointF &b) {
    return std::abs(a.x() - b.x()) < 1e-4 && std::abs(a.y() - b.y()) < 1e-4;
}

bool near(const QPolygonF &a, const QPolygonF &b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](const QPointF &one, const QPointF &other) { return near(one, other); });
}

const double Root2 = std::sqrt(2.0);

} // namespace

class Tst_FigureGeometry : public QObject {
    Q_OBJECT
private slots:
    void headOfArrow_data();
    void headOfArrow();
    void headOfArrowWithoutLength();
    void hitHeadIsOnePixelLarger();
    void halfWidthOfShaft_data();
    void halfWidthOfShaft();
    void hitAreaOfArrow_data();
    void hitAreaOfArrow();
    void hitAreaOfArrowWithoutLength();
    void balloon_data();
    void balloon();
    void clippedLine_data();
    void clippedLine();
};

void Tst_FigureGeometry::headOfArrow_data() {
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QPointF>("oneBarb");
    QTest::addColumn<QPointF>("otherBarb");
    const QPointF tip(100, 80);
    const double leg = 7 * Root2;
    QTest::newRow("right") << QPointF(10, 80) << tip << QPointF(93, 87) << QPointF(93, 73);
    QTest::newRow("left") << QPointF(190, 80) << tip << QPointF(107, 73) << QPointF(107, 87);
    QTest::newRow("down") << QPointF(100, 10) << tip << QPointF(93, 73) << QPointF(107, 73);
    QTest::newRow("up") << QPointF(100, 200) << tip << QPointF(107, 87) << QPointF(93, 87);
    QTest::newRow("down right") << QPointF(60, 40) << tip << QPointF(100 - leg, 80) << QPointF(100, 80 - leg);
    QTest::newRow("up left") << QPointF(140, 120) << tip << QPointF(100 + leg, 80) << QPointF(100, 80 + leg);
    QTest::newRow("3 to 4") << QPointF(70, 40) << tip << QPointF(90.2, 78.6) << QPointF(101.4, 70.2);
    QTest::newRow("short as one pixel") << QPointF(99, 80) << tip << QPointF(93, 87) << QPointF(93, 73);
}

void Tst_FigureGeometry::headOfArrow() {
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);
    QFETCH(QPointF, oneBarb);
    QFETCH(QPointF, otherBarb);
    QVERIFY(near(arrowHead(start, end), QPolygonF({end, oneBarb, otherBarb, end})));
}

void Tst_FigureGeometry::headOfArrowWithoutLength() {
    const QPointF tip(30, 40);
    QCOMPARE(arrowHead(tip, tip), QPolygonF({tip, tip, tip, tip}));
}

void Tst_FigureGeometry::hitHeadIsOnePixelLarger() {
    const QPolygonF expected({{101, 80}, {92, 88}, {92, 72}, {101, 80}});
    QVERIFY(near(arrowHitHead({10, 80}, {100, 80}), expected));
    const QPolygonF upwards({{100, 79}, {108, 88}, {92, 88}, {100, 79}});
    QVERIFY(near(arrowHitHead({100, 200}, {100, 80}), upwards));
}

// The direction counts from the tip back to the start.
void Tst_FigureGeometry::halfWidthOfShaft_data() {
    QTest::addColumn<QPointF>("back");
    QTest::addColumn<QPointF>("half");
    const auto row = [](const char *name, double x, int sign, const QPointF &half) {
        QTest::newRow(name) << QPointF(1000 * x, sign * 1000 * std::sqrt(1 - x * x)) << half;
    };
    row("exactly left", -1.0, 1, {1, -1});
    row("left, last of the band", -0.9001, 1, {1, -1});
    row("beyond it", -0.8999, 1, {-0.8999, -std::sqrt(1 - 0.8999 * 0.8999)});
    row("beyond it, upwards", -0.8999, -1, {-0.8999, std::sqrt(1 - 0.8999 * 0.8999)});
    row("before the upright band", -0.1001, 1, {-0.1001, -std::sqrt(1 - 0.1001 * 0.1001)});
    row("upright, first of the band", -0.0999, 1, {1, -1});
    row("exactly down", 0.0, 1, {1, -1});
    row("exactly up", 0.0, -1, {1, -1});
    row("where the bands overlap the first wins", 0.005, 1, {1, -1});
    row("last of the first band", 0.00999, 1, {1, -1});
    row("only in the second", 0.01001, 1, {1, 1});
    row("last of the second", 0.0999, -1, {1, 1});
    row("beyond the second", 0.1001, 1, {0.1001, -std::sqrt(1 - 0.1001 * 0.1001)});
    row("diagonal", 1 / Root2, 1, {1 / Root2, -1 / Root2});
    row("diagonal upwards", 1 / Root2, -1, {1 / Root2, 1 / Root2});
    row("before the right band", 0.8999, -1, {0.8999, std::sqrt(1 - 0.8999 * 0.8999)});
    row("right, first of the band", 0.9001, 1, {1, 1});
    row("exactly right", 1.0, 1, {1, 1});
    QTest::newRow("no length") << QPointF() << QPointF(1, -1);
}

void Tst_FigureGeometry::halfWidthOfShaft() {
    QFETCH(QPointF, back);
    QFETCH(QPointF, half);
    const QPointF end(40, 50);
    QVERIFY(near(arrowShaftHalfWidth(end + back, end), half));
}

void Tst_FigureGeometry::hitAreaOfArrow_data() {
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("hit");
    const QPointF left(10, 50), right(110, 50);
    // Pointing right, the half width is (1, -1): the quad leans.
    QTest::newRow("right: on the shaft") << left << right << QPointF(60, 50) << true;
    QTest::newRow("right: inside the quad") << left << right << QPointF(60, 50.9) << true;
    QTest::newRow("right: above it") << left << right << QPointF(60, 48.9) << false;
    QTest::newRow("right: leaning over the start") << left << right << QPointF(9.5, 50.7) << true;
    QTest::newRow("right: not the other way") << left << right << QPointF(9.5, 49.3) << false;
    QTest::newRow("right: barb") << left << right << QPointF(102.5, 57) << true;
    QTest::newRow("right: beside the barb") << left << right << QPointF(101.5, 57) << false;
    QTest::newRow("right: beyond the drawn tip") << left << right << QPointF(110.5, 50) << true;
    QTest::newRow("right: too far beyond") << left << right << QPointF(111.5, 50) << false;
    QTest::newRow("left: leaning over the start") << right << left << QPointF(110.5, 50.7) << true;
    QTest::newRow("left: not the other way") << right << left << QPointF(110.5, 49.3) << false;
    QTest::newRow("diagonal: on the shaft") << QPointF(10, 10) << QPointF(90, 90) << QPointF(40, 40) << true;
    QTest::newRow("diagonal: inside") << QPointF(10, 10) << QPointF(90, 90) << QPointF(40.6, 39.4) << true;
    QTest::newRow("diagonal: beside") << QPointF(10, 10) << QPointF(90, 90) << QPointF(40.8, 39.2) << false;
    QTest::newRow("upright: on the shaft") << QPointF(50, 10) << QPointF(50, 90) << QPointF(50.5, 40) << true;
    QTest::newRow("upright: beside") << QPointF(50, 10) << QPointF(50, 90) << QPointF(51.5, 40) << false;
}

void Tst_FigureGeometry::hitAreaOfArrow() {
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);
    QFETCH(QPointF, point);
    QFETCH(bool, hit);
    QCOMPARE(arrowHitArea(start, end).containsPoint(point, Qt::OddEvenFill), hit);
}

void Tst_FigureGeometry::hitAreaOfArrowWithoutLength() {
    for (const QPointF &point : arrowHitArea({30, 40}, {30, 40}))
        QVERIFY(near(point, {30, 40}) || QLineF(point, {30, 40}).length() < 1.5);
}

void Tst_FigureGeometry::balloon_data() {
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QPolygonF>("expected");
    QTest::newRow("even")
        << QRectF(10, 20, 80, 50)
        << QPolygonF({{10, 20}, {10, 60}, {30, 60}, {30, 70}, {50, 60}, {90, 60}, {90, 20}, {10, 20}});
    QTest::newRow("odd")
        << QRectF(0, 0, 3, 7)
        << QPolygonF({{0, 0}, {0, 5.6}, {0.75, 5.6}, {0.75, 7}, {1.5, 5.6}, {3, 5.6}, {3, 0}, {0, 0}});
}

void Tst_FigureGeometry::balloon() {
    QFETCH(QRectF, rect);
    QFETCH(QPolygonF, expected);
    QVERIFY(near(speechBalloonPolygon(rect), expected));
}

void Tst_FigureGeometry::clippedLine_data() {
    QTest::addColumn<QLineF>("line");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<QLineF>("part");
    const QLineF none;
    QTest::newRow("inside") << QLineF(20, 20, 60, 40) << true << QLineF(20, 20, 60, 40);
    QTest::newRow("along an axis") << QLineF(0, 20, 100, 20) << true << QLineF(10, 20, 90, 20);
    QTest::newRow("upright, upwards") << QLineF(30, 100, 30, 0) << true << QLineF(30, 50, 30, 10);
    QTest::newRow("slanted through a corner") << QLineF(0, 0, 100, 50) << true << QLineF(20, 10, 90, 45);
    QTest::newRow("on the border") << QLineF(0, 10, 100, 10) << true << QLineF(10, 10, 90, 10);
    QTest::newRow("beside, along an axis") << QLineF(0, 9, 100, 9) << false << none;
    QTest::newRow("before it ends") << QLineF(0, 20, 9, 20) << false << none;
    QTest::newRow("past a corner") << QLineF(0, 30, 30, 0) << true << QLineF(10, 20, 20, 10);
    QTest::newRow("misses a corner") << QLineF(0, 19, 19, 0) << false << none;
    QTest::newRow("a point inside") << QLineF(20, 20, 20, 20) << true << QLineF(20, 20, 20, 20);
    QTest::newRow("a point outside") << QLineF(5, 20, 5, 20) << false << none;
}

void Tst_FigureGeometry::clippedLine() {
    QFETCH(QLineF, line);
    QFETCH(bool, visible);
    QFETCH(QLineF, part);
    QCOMPARE(clipLine(&line, QRectF(10, 10, 80, 40)), visible);
    if (visible)
        QVERIFY(near(line.p1(), part.p1()) && near(line.p2(), part.p2()));
}

QTEST_APPLESS_MAIN(Tst_FigureGeometry)
#include "tst_figuregeometry.moc"
