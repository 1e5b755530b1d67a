#include "canvas/viewframe.h"

#include <QtTest>

class Tst_ViewFrame : public QObject {
    Q_OBJECT
private slots:
    void newCircumstancesMakeEverythingStale();
    void staleIsTakenOnce();
    void staleStaysWithinThePicture();
    void tornRegionIsRounded();
    void clearGivesThePictureBack();
    void underlayStartsAsThePicture();
    void underlayGoesStaleWithThePicture();
    void underlayStaysGoodUnderAChangeAbove();
    void underlayIsBroughtBackInPart();
    void underlayEndsWithThePicturesSize();
};

void Tst_ViewFrame::newCircumstancesMakeEverythingStale() {
    ViewFrame frame;
    QVERIFY(frame.isNull());
    const QRect all(0, 0, 100, 80);
    const auto taken = [&] { return frame.takeStale(all); };
    frame.adapt(all.size(), QTransform(), Qt::white);
    QCOMPARE(taken(), QRegion(all));
    frame.adapt(all.size(), QTransform(), Qt::white);
    QVERIFY(taken().isEmpty());
    frame.adapt(all.size(), QTransform::fromTranslate(1, 0), Qt::white);
    QCOMPARE(taken(), QRegion(all));
    frame.adapt(all.size(), QTransform::fromTranslate(1, 0), Qt::black);
    QCOMPARE(taken(), QRegion(all));
    frame.adapt(QSize(90, 80), QTransform::fromTranslate(1, 0), Qt::black);
    QCOMPARE(taken(), QRegion(0, 0, 90, 80));
    QCOMPARE(frame.image().size(), QSize(90, 80));
}

void Tst_ViewFrame::staleIsTakenOnce() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.takeStale(QRect(0, 0, 100, 80));
    frame.markStale(QRect(10, 10, 40, 40));
    QCOMPARE(frame.takeStale(QRect(0, 0, 30, 80)), QRegion(10, 10, 20, 40));
    // What was not exposed is still to be painted.
    QCOMPARE(frame.takeStale(QRect(0, 0, 100, 80)), QRegion(30, 10, 20, 40));
    QVERIFY(frame.takeStale(QRect(0, 0, 100, 80)).isEmpty());
}

void Tst_ViewFrame::staleStaysWithinThePicture() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.takeStale(QRect(0, 0, 100, 80));
    frame.markStale(QRect(-20, 70, 50, 50));
    QCOMPARE(frame.takeStale(QRect(-100, -100, 500, 500)), QRegion(0, 70, 30, 10));
}

void Tst_ViewFrame::tornRegionIsRounded() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.takeStale(QRect(0, 0, 100, 80));
    for (int i = 0; i < 40; ++i)
        frame.markStale(QRect(i * 2, i * 2, 1, 1));
    const QRegion taken = frame.takeStale(QRect(0, 0, 100, 80));
    QVERIFY(taken.rectCount() <= 16);
    for (int i = 0; i < 40; ++i)
        QVERIFY(taken.contains(QPoint(i * 2, i * 2)));
}

void Tst_ViewFrame::clearGivesThePictureBack() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.clear();
    QVERIFY(frame.isNull());
    QVERIFY(frame.takeStale(QRect(0, 0, 100, 80)).isEmpty());
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    QCOMPARE(frame.takeStale(QRect(0, 0, 100, 80)), QRegion(0, 0, 100, 80));
}

void Tst_ViewFrame::underlayStartsAsThePicture() {
    ViewFrame frame;
    QVERIFY(!frame.hasUnderlay());
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.image().fill(Qt::red);
    frame.takeStale(QRect(0, 0, 100, 80));
    frame.markStale(QRect(0, 0, 10, 10));
    frame.beginUnderlay(QRect(50, 50, 100, 10));
    QVERIFY(frame.hasUnderlay());
    QCOMPARE(frame.underlay(), frame.image());
    const QRegion stale = QRegion(0, 0, 10, 10) + QRegion(50, 50, 50, 10);
    QCOMPARE(frame.takeStaleUnderlay(), stale);
    QVERIFY(frame.takeStaleUnderlay().isEmpty());
    frame.endUnderlay();
    QVERIFY(!frame.hasUnderlay());
}

void Tst_ViewFrame::underlayGoesStaleWithThePicture() {
    ViewFrame frame;
    const QRect all(0, 0, 100, 80);
    frame.adapt(all.size(), QTransform(), Qt::white);
    frame.takeStale(all);
    frame.beginUnderlay(QRegion());
    QVERIFY(frame.takeStaleUnderlay().isEmpty());
    frame.markStale(QRect(90, 10, 40, 5));
    frame.takeStale(all); // painting the one does not bring the other up to date
    QCOMPARE(frame.takeStaleUnderlay(), QRegion(90, 10, 10, 5));
    frame.markAllStale();
    QCOMPARE(frame.takeStaleUnderlay(), QRegion(all));
    frame.adapt(all.size(), QTransform::fromTranslate(1, 0), Qt::white);
    QCOMPARE(frame.takeStaleUnderlay(), QRegion(all));
}

void Tst_ViewFrame::underlayStaysGoodUnderAChangeAbove() {
    ViewFrame frame;
    const QRect all(0, 0, 100, 80);
    frame.adapt(all.size(), QTransform(), Qt::white);
    frame.takeStale(all);
    frame.beginUnderlay(QRegion());
    frame.markStaleAbove(QRect(90, 10, 40, 5));
    QCOMPARE(frame.takeStale(all), QRegion(90, 10, 10, 5));
    QVERIFY(frame.takeStaleUnderlay().isEmpty());
}

void Tst_ViewFrame::underlayIsBroughtBackInPart() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.image().fill(Qt::red);
    frame.beginUnderlay(QRegion());
    frame.image().fill(Qt::blue);
    frame.uncover(QRect(10, 20, 5, 5));
    QCOMPARE(frame.image().pixelColor(10, 20), QColor(Qt::red));
    QCOMPARE(frame.image().pixelColor(14, 24), QColor(Qt::red));
    QCOMPARE(frame.image().pixelColor(9, 20), QColor(Qt::blue));
    QCOMPARE(frame.image().pixelColor(15, 24), QColor(Qt::blue));
    QCOMPARE(frame.underlay().pixelColor(50, 50), QColor(Qt::red));
}

void Tst_ViewFrame::underlayEndsWithThePicturesSize() {
    ViewFrame frame;
    frame.adapt(QSize(100, 80), QTransform(), Qt::white);
    frame.beginUnderlay(QRegion());
    frame.adapt(QSize(90, 80), QTransform(), Qt::white);
    QVERIFY(!frame.hasUnderlay());
    frame.beginUnderlay(QRegion());
    frame.clear();
    QVERIFY(!frame.hasUnderlay());
}

QTEST_GUILESS_MAIN(Tst_ViewFrame)
#include "tst_viewframe.moc"
