#include "popups/gradientslider.h"

#include <QImage>
#include <QTest>

class Tst_GradientSlider : public QObject {
    Q_OBJECT
private slots:
    void beginsWithBlackAndWhite();
    void handleStandsAtItsValue_data();
    void handleStandsAtItsValue();
    void coloursAreSpreadEvenly();
    void handleShowsTheHue();
    void mouseTakesTheHandle();
    void keysMoveTheValue();
    void emptyRangeStandsAtTheBottom();
};

void Tst_GradientSlider::beginsWithBlackAndWhite() {
    const GradientSlider slider;
    QCOMPARE(slider.gradient(), (QList<QColor>{Qt::black, Qt::white}));
    QCOMPARE(slider.orientation(), Qt::Vertical);
}

void Tst_GradientSlider::handleStandsAtItsValue_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("fraction"); // from the top
    QTest::newRow("largest at the top") << 359 << 0.0;
    QTest::newRow("smallest at the bottom") << 0 << 1.0;
    QTest::newRow("between") << 100 << 1.0 - 100 / 359.0;
}

void Tst_GradientSlider::handleStandsAtItsValue() {
    QFETCH(int, value);
    QFETCH(double, fraction);
    GradientSlider slider;
    slider.setRange(0, 359);
    slider.resize(16, 100);
    slider.setValue(value);
    const QRectF groove = slider.grooveRect();
    QCOMPARE(groove.center(), QPointF(8, 50));
    QVERIFY(qAbs(slider.handleCentre().x() - 8) < 1e-9);
    QVERIFY(qAbs(slider.handleCentre().y() - (groove.top() + fraction * groove.height())) < 1e-9);
}

void Tst_GradientSlider::coloursAreSpreadEvenly() {
    GradientSlider slider;
    slider.setRange(0, 359);
    slider.setGradient({Qt::red, Qt::green, Qt::blue});
    slider.resize(16, 216); // a groove of 200 from 8 on
    slider.setValue(0);
    const QImage image = slider.grab().toImage();
    const QColor middle = image.pixelColor(8, 108);
    QVERIFY(middle.red() < 5 && middle.green() > 250 && middle.blue() < 5);
    const QColor quarter = image.pixelColor(8, 58);
    QVERIFY(qAbs(quarter.red() - 127) < 4 && qAbs(quarter.green() - 127) < 4 && quarter.blue() == 0);
    const QColor top = image.pixelColor(8, 10);
    QVERIFY(top.red() > 245 && top.green() < 10);
}

void Tst_GradientSlider::handleShowsTheHue() {
    GradientSlider slider;
    slider.setRange(0, 359);
    slider.setHandleWidth(3);
    slider.resize(16, 100);
    slider.setValue(120);
    const QImage image = slider.grab().toImage();
    QCOMPARE(image.pixel(slider.handleCentre().toPoint()), qRgb(0, 255, 0));
    QCOMPARE(slider.handleWidth(), 3);
}

void Tst_GradientSlider::mouseTakesTheHandle() {
    GradientSlider slider;
    slider.setRange(0, 359);
    slider.resize(16, 100);
    slider.show();
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(8, 50)); // the middle of the bar
    QCOMPARE(slider.value(), 180);
    QMouseEvent drag(QEvent::MouseMove, QPointF(30, -40), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&slider, &drag);
    QCOMPARE(slider.value(), 359);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(8, 50));
    QMouseEvent hover(QEvent::MouseMove, QPointF(8, 95), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&slider, &hover);
    QCOMPARE(slider.value(), 359);
    QTest::mousePress(&slider, Qt::RightButton, {}, QPoint(8, 95));
    QCOMPARE(slider.value(), 359);
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(8, 99));
    QCOMPARE(slider.value(), 0);
}

void Tst_GradientSlider::keysMoveTheValue() {
    GradientSlider slider;
    slider.setRange(0, 359);
    slider.setValue(100);
    slider.show();
    QVERIFY(slider.focusPolicy() & Qt::TabFocus);
    QTest::keyClick(&slider, Qt::Key_Up);
    QCOMPARE(slider.value(), 101);
    QTest::keyClick(&slider, Qt::Key_Down);
    QCOMPARE(slider.value(), 100);
}

void Tst_GradientSlider::emptyRangeStandsAtTheBottom() {
    GradientSlider slider;
    slider.setRange(5, 5);
    slider.resize(16, 100);
    QCOMPARE(slider.handleCentre().y(), slider.grooveRect().bottom());
    slider.resize(16, 4); // no room at all
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(8, 2));
    QCOMPARE(slider.value(), 5);
}

QTEST_MAIN(Tst_GradientSlider)
#include "tst_gradientslider.moc"
