#include "app/captureplacement.h"

#include <QtTest>

class Tst_CapturePlacement : public QObject {
    Q_OBJECT
private slots:
    void geometry_data();
    void geometry();
};

void Tst_CapturePlacement::geometry_data() {
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("expected");

    // Panel 172 wide, toolbar 80 high.
    const QRect desktop(0, 0, 1920, 1040);
    QTest::newRow("room around") << QSize(600, 400) << QPoint(500, 300) << desktop << QSize(0, 0)
                                 << QRect(400, 120, 972, 680);
    QTest::newRow("frame is part of it")
        << QSize(600, 400) << QPoint(500, 300) << desktop << QSize(4, 30) << QRect(400, 120, 968, 650);
    QTest::newRow("no larger than the screen")
        << QSize(3000, 2000) << QPoint(500, 300) << desktop << QSize(4, 30) << QRect(400, 120, 1916, 1010);
    QTest::newRow("frame measured while the window was larger")
        << QSize(5000, 4000) << QPoint(0, 0) << desktop << QSize(-909, -299)
        << QRect(QPoint(0, 0), desktop.size());
    QTest::newRow("only one side too large")
        << QSize(3000, 100) << QPoint(500, 300) << desktop << QSize(0, 0) << QRect(400, 120, 1920, 380);
    QTest::newRow("exactly the screen")
        << QSize(1548, 760) << QPoint(100, 180) << desktop << QSize(0, 0) << QRect(0, 0, 1920, 1040);
    QTest::newRow("near the corner") << QSize(100, 100) << QPoint(99, 179) << desktop << QSize(0, 0)
                                     << QRect(0, 0, 472, 380);
    QTest::newRow("just off the corner")
        << QSize(100, 100) << QPoint(101, 181) << desktop << QSize(0, 0) << QRect(1, 1, 472, 380);
    QTest::newRow("left of the origin") << QSize(100, 100) << QPoint(-900, -50) << QRect(-1280, 0, 1280, 1024)
                                        << QSize(0, 0) << QRect(0, 0, 472, 380);
    QTest::newRow("screen on the right")
        << QSize(2000, 100) << QPoint(2500, 500) << QRect(1920, 0, 1280, 1024) << QSize(0, 0)
        << QRect(2400, 320, 1280, 380);
    // A line can name any number. What lies there is moved onto a screen later, by plain sums.
    const int lowest = std::numeric_limits<int>::min();
    const int highest = std::numeric_limits<int>::max();
    QTest::newRow("lowest numbers") << QSize(100, 100) << QPoint(lowest, lowest) << desktop << QSize(0, 0)
                                    << QRect(0, 0, 472, 380);
    QTest::newRow("highest numbers") << QSize(100, 100) << QPoint(highest, highest) << desktop << QSize(0, 0)
                                     << QRect(999900, 999820, 472, 380);
}

void Tst_CapturePlacement::geometry() {
    QFETCH(QSize, image);
    QFETCH(QPoint, point);
    QFETCH(QRect, available);
    QFETCH(QSize, frame);
    QTEST(fittedGeometry({image, 172, 80, point, available, frame}), "expected");
}

QTEST_APPLESS_MAIN(Tst_CapturePlacement)
#include "tst_captureplacement.moc"
