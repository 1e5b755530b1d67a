#include "canvas/shiftgeometry.h"

#include <QtMath>
#include <QtTest>

Q_DECLARE_METATYPE(ShiftDirection)

class Tst_ShiftGeometry : public QObject {
    Q_OBJECT
private slots:
    void direction_data();
    void direction();
    void directionByAngle_data();
    void directionByAngle();
    void constrainedPoint_data();
    void constrainedPoint();
    void square_data();
    void square();
    void zeroSize_data();
    void zeroSize();
};

void Tst_ShiftGeometry::direction_data() {
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<ShiftDirection>("expected");
    const QPointF a(50, 40);
    QTest::newRow("same point") << a << a << ShiftDirection::Horizontal;
    QTest::newRow("straight down") << a << a + QPointF(0, 1) << ShiftDirection::Vertical;
    QTest::newRow("straight up") << a << a + QPointF(0, -9) << ShiftDirection::Vertical;
    QTest::newRow("right") << a << a + QPointF(1, 0) << ShiftDirection::Horizontal;
    QTest::newRow("left") << a << a + QPointF(-7, 0) << ShiftDirection::Horizontal;
    QTest::newRow("down right") << a << a + QPointF(5, 5) << ShiftDirection::FallingRight;
    QTest::newRow("up left") << a << a + QPointF(-5, -5) << ShiftDirection::FallingRight;
    QTest::newRow("up right") << a << a + QPointF(5, -5) << ShiftDirection::RisingRight;
    QTest::newRow("down left") << a << a + QPointF(-5, 5) << ShiftDirection::RisingRight;
    QTest::newRow("flat") << a << a + QPointF(10, 4) << ShiftDirection::Horizontal;             // sine 0.371
    QTest::newRow("steep") << a << a + QPointF(4, -10) << ShiftDirection::Vertical;             // sine 0.928
    QTest::newRow("just flat") << a << a + QPointF(128, 53) << ShiftDirection::Horizontal;      // 0.38256
    QTest::newRow("just not flat") << a << a + QPointF(99, 41) << ShiftDirection::FallingRight; // 0.38263
    QTest::newRow("just not steep") << a << a + QPointF(63, 152) << ShiftDirection::FallingRight; // 0.92379
    QTest::newRow("just steep") << a << a + QPointF(46, 111) << ShiftDirection::Vertical;         // 0.92381
    QTest::newRow("not flat enough") << a << a + QPointF(10, 5) << ShiftDirection::FallingRight;  // 0.447
    QTest::newRow("not steep enough") << a << a + QPointF(-5, 10) << ShiftDirection::RisingRight; // 0.894
}

void Tst_ShiftGeometry::direction() {
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(ShiftDirection, expected);
    QCOMPARE(shiftDirection(from, to), expected);
}

void Tst_ShiftGeometry::directionByAngle_data() {
    QTest::addColumn<double>("degrees");
    QTest::addColumn<ShiftDirection>("expected");
    QTest::newRow("22") << 22.0 << ShiftDirection::Horizontal;
    QTest::newRow("23") << 23.0 << ShiftDirection::RisingRight;
    QTest::newRow("67") << 67.0 << ShiftDirection::RisingRight;
    QTest::newRow("68") << 68.0 << ShiftDirection::Vertical;
    QTest::newRow("112") << 112.0 << ShiftDirection::Vertical;
    QTest::newRow("113") << 113.0 << ShiftDirection::FallingRight;
    QTest::newRow("157") << 157.0 << ShiftDirection::FallingRight;
    QTest::newRow("158") << 158.0 << ShiftDirection::Horizontal;
    QTest::newRow("202") << 202.0 << ShiftDirection::Horizontal;
    QTest::newRow("203") << 203.0 << ShiftDirection::RisingRight;
    QTest::newRow("337") << 337.0 << ShiftDirection::FallingRight;
    QTest::newRow("338") << 338.0 << ShiftDirection::Horizontal;
}

void Tst_ShiftGeometry::directionByAngle() {
    QFETCH(double, degrees);
    QFETCH(ShiftDirection, expected);
    // Degrees are counted as on paper, so up is -y.
    const QPointF to(1000 * qCos(qDegreesToRadians(degrees)), -1000 * qSin(qDegreesToRadians(degrees)));
    QCOMPARE(shiftDirection(QPointF(0, 0), to), expected);
}

void Tst_ShiftGeometry::constrainedPoint_data() {
    QTest::addColumn<ShiftDirection>("direction");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QPointF>("expected");
    using D = ShiftDirection;
    QTest::newRow("vertical keeps x") << D::Vertical << QPointF(9, -4) << QPointF(0, -4);
    QTest::newRow("horizontal keeps y") << D::Horizontal << QPointF(9, -4) << QPointF(9, 0);
    QTest::newRow("falling, longer leg is x") << D::FallingRight << QPointF(10, 2) << QPointF(10, 10);
    QTest::newRow("falling, longer leg is y") << D::FallingRight << QPointF(2, 10) << QPointF(10, 10);
    QTest::newRow("falling, up left") << D::FallingRight << QPointF(-3, -8) << QPointF(-8, -8);
    QTest::newRow("falling, mouse turned back in x") << D::FallingRight << QPointF(-9, 4) << QPointF(4, 4);
    QTest::newRow("falling, mouse turned back in y") << D::FallingRight << QPointF(9, -4) << QPointF(-4, -4);
    QTest::newRow("falling, only x moves") << D::FallingRight << QPointF(6, 0) << QPointF(6, 6);
    QTest::newRow("rising, up right") << D::RisingRight << QPointF(10, -2) << QPointF(10, -10);
    QTest::newRow("rising, down left") << D::RisingRight << QPointF(-2, 10) << QPointF(-10, 10);
    QTest::newRow("rising, longer leg is x downwards") << D::RisingRight << QPointF(-7, 3) << QPointF(-7, 7);
    QTest::newRow("rising, mouse turned back") << D::RisingRight << QPointF(-9, -4) << QPointF(4, -4);
    QTest::newRow("legs are truncated") << D::FallingRight << QPointF(7.9, 2) << QPointF(7, 7);
    QTest::newRow("direction worked out: diagonal") << D::None << QPointF(10, 6) << QPointF(10, 10);
    QTest::newRow("direction worked out: horizontal") << D::None << QPointF(10, 2) << QPointF(10, 0);
}

void Tst_ShiftGeometry::constrainedPoint() {
    QFETCH(ShiftDirection, direction);
    QFETCH(QPointF, offset);
    QFETCH(QPointF, expected);
    const QPointF from(100, 200);
    QCOMPARE(constrainedToDirection(from, from + offset, direction), from + expected);
}

void Tst_ShiftGeometry::square_data() {
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QRectF>("expected"); // relative to the start
    QTest::newRow("down right, flat") << QPointF(10, 4) << QRectF(0, 0, 4, 4);
    QTest::newRow("down right, tall") << QPointF(3, 40) << QRectF(0, 0, 3, 3);
    QTest::newRow("up left") << QPointF(-10, -4) << QRectF(-4, -4, 4, 4);
    QTest::newRow("up right") << QPointF(5, -9) << QRectF(0, -5, 5, 5);
    QTest::newRow("down left") << QPointF(-5, 9) << QRectF(-5, 0, 5, 5);
    QTest::newRow("no width") << QPointF(0, 9) << QRectF(0, 0, 0, 0);
    QTest::newRow("truncated") << QPointF(6.7, 9.9) << QRectF(0, 0, 6, 6);
}

void Tst_ShiftGeometry::square() {
    QFETCH(QPointF, offset);
    QFETCH(QRectF, expected);
    const QPointF from(30, 20);
    QCOMPARE(squareConstraint(from, from + offset), expected.translated(from));
}

void Tst_ShiftGeometry::zeroSize_data() {
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("flat") << QRectF(5, 6, 7, 0) << QRectF(5, 6, 7, 1);
    QTest::newRow("thin") << QRectF(5, 6, 0, 7) << QRectF(5, 6, 1, 7);
    QTest::newRow("point") << QRectF(5, 6, 0, 0) << QRectF(5, 6, 1, 1);
    QTest::newRow("turned round first") << QRectF(5, 6, -3, 0) << QRectF(2, 6, 3, 1);
    QTest::newRow("thinner than a pixel stays") << QRectF(5, 6, 0.5, 2) << QRectF(5, 6, 0.5, 2);
}

void Tst_ShiftGeometry::zeroSize() {
    QFETCH(QRectF, rect);
    QFETCH(QRectF, expected);
    QCOMPARE(withoutZeroSize(rect), expected);
}

QTEST_APPLESS_MAIN(Tst_ShiftGeometry)
#include "tst_shiftgeometry.moc"
