#include "ui/snaptoscreen.h"

#include <QTest>

namespace {

const QRect Left(0, 0, 1000, 800);
const QRect Right(1000, 0, 1200, 900);

} // namespace

class Tst_SnapToScreen : public QObject {
    Q_OBJECT
private slots:
    void movesToTheNearestEdge_data();
    void movesToTheNearestEdge();
    void frameReachesFurtherThanTheGeometry_data();
    void frameReachesFurtherThanTheGeometry();
};

void Tst_SnapToScreen::movesToTheNearestEdge_data() {
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("on one screen") << QRect(700, 100, 300, 200) << QPoint(700, 100);
    QTest::newRow("nowhere") << QRect(5000, 100, 300, 200) << QPoint(5000, 100);
    QTest::newRow("mostly left") << QRect(750, 100, 300, 200) << QPoint(700, 100);
    QTest::newRow("mostly right") << QRect(950, 100, 300, 200) << QPoint(1000, 100);
    QTest::newRow("half and half goes to the first") << QRect(850, 100, 300, 200) << QPoint(700, 100);
    // 1 pixel off the right edge, 60 above the top one: the top is nearer to be reached from outside.
    QTest::newRow("out at the top, too") << QRect(701, -60, 300, 200) << QPoint(701, 0);
    QTest::newRow("out at the bottom, too") << QRect(950, 750, 300, 200) << QPoint(1000, 750);
    QTest::newRow("further out at the bottom") << QRect(950, 790, 300, 200) << QPoint(950, 700);
    QTest::newRow("tie of left and top") << QRect(990, -10, 300, 200) << QPoint(1000, -10);
}

void Tst_SnapToScreen::movesToTheNearestEdge() {
    QFETCH(QRect, frame);
    QTEST(snappedToScreen(frame, frame, {Left, Right}), "expected");
}

void Tst_SnapToScreen::frameReachesFurtherThanTheGeometry_data() {
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("only the frame meets both screens")
        << QRect(1000, 130, 300, 200) << QRect(990, 100, 320, 240) << QPoint(990, 100);
    QTest::newRow("the frame decides which screen shows most")
        << QRect(840, 130, 300, 200) << QRect(840, 100, 350, 240) << QPoint(1000, 100);
}

// Screens are counted by what the window draws on, and the one it goes to is found by all that is seen of it.
void Tst_SnapToScreen::frameReachesFurtherThanTheGeometry() {
    QFETCH(QRect, geometry);
    QFETCH(QRect, frame);
    QTEST(snappedToScreen(geometry, frame, {Left, Right}), "expected");
}

QTEST_GUILESS_MAIN(Tst_SnapToScreen)
#include "tst_snaptoscreen.moc"
