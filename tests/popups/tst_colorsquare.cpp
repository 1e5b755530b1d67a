#include "popups/colorsquare.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>

class Tst_ColorSquare : public QObject {
    Q_OBJECT
private slots:
    void mouseChooses_data();
    void mouseChooses();
    void frameIsNotPartOfTheSquare();
    void changeIsToldBeforeTheChoice();
    void dragChooses();
    void colourSetsTheFields_data();
    void colourSetsTheFields();
    void shownColourAgainDoesNothing();
    void grayKeepsTheHue();
    void everyColourComesBackUnchanged();
    void slotsBoundTheirValues_data();
    void slotsBoundTheirValues();
    void pixelsAreTheColoursTheyStandFor();
    void keysMoveTheChoice();
};

void Tst_ColorSquare::mouseChooses_data() {
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<double>("saturation");
    QTest::addColumn<double>("value");
    QTest::newRow("top left") << QPoint(0, 0) << 0.0 << 1.0;
    QTest::newRow("inside") << QPoint(33, 25) << 0.25 << 0.75;
    QTest::newRow("last row") << QPoint(66, 99) << 0.5 << 0.01;
    QTest::newRow("beyond the bottom right") << QPoint(500, 500) << 1.0 << 0.0;
    QTest::newRow("beyond the top left") << QPoint(-50, -1) << 0.0 << 1.0;
}

void Tst_ColorSquare::mouseChooses() {
    QFETCH(QPoint, position);
    QFETCH(double, saturation);
    QFETCH(double, value);
    ColorSquare square;
    square.resize(132, 100);
    square.SetHue(0.5);
    square.show();
    QMouseEvent press(QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(&square, &press);
    QVERIFY(qAbs(square.saturation() - saturation) < 1e-9);
    QVERIFY(qAbs(square.value() - value) < 1e-9);
    QCOMPARE(square.hue(), 0.5);
    QCOMPARE(square.color(), QColor::fromHsvF(0.5, saturation, value, 1.0));
    QCOMPARE(square.cursorPosition(), QPointF(saturation, 1.0 - value));
}

void Tst_ColorSquare::frameIsNotPartOfTheSquare() {
    ColorSquare square;
    square.setFrameStyle(QFrame::Box | QFrame::Plain);
    square.setLineWidth(3);
    square.resize(106, 106);
    square.show();
    QTest::mousePress(&square, Qt::LeftButton, {}, QPoint(3 + 40, 3 + 20));
    QVERIFY(qAbs(square.saturation() - 0.4) < 1e-9);
    QVERIFY(qAbs(square.value() - 0.8) < 1e-9);
}

void Tst_ColorSquare::changeIsToldBeforeTheChoice() {
    ColorSquare square;
    square.resize(132, 100);
    square.show();
    QStringList order;
    connect(&square, &ColorSquare::colorChanged, &square,
            [&](const QColor &color) { order += QStringLiteral("changed ") + color.name(); });
    connect(&square, &ColorSquare::colorSelected, &square,
            [&](const QColor &color) { order += QStringLiteral("selected ") + color.name(); });
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(0, 0), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(&square, &press);
    QCOMPARE(order, (QStringList{QStringLiteral("changed #ffffff"), QStringLiteral("selected #ffffff")}));
    order.clear();
    QTest::mousePress(&square, Qt::RightButton, {}, QPoint(50, 50));
    QVERIFY(order.isEmpty());
    square.SetValue(0.0);
    QCOMPARE(order, QStringList(QStringLiteral("changed #000000")));
}

void Tst_ColorSquare::dragChooses() {
    ColorSquare square;
    square.resize(100, 100);
    square.show();
    QSignalSpy selected(&square, &ColorSquare::colorSelected);
    QTest::mousePress(&square, Qt::LeftButton, {}, QPoint(10, 10));
    QMouseEvent drag(QEvent::MouseMove, QPointF(80, 30), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&square, &drag);
    QMouseEvent hover(QEvent::MouseMove, QPointF(10, 90), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&square, &hover);
    QCOMPARE(selected.count(), 2);
    QVERIFY(qAbs(square.saturation() - 0.8) < 1e-9);
    QVERIFY(qAbs(square.value() - 0.7) < 1e-9);
}

void Tst_ColorSquare::colourSetsTheFields_data() {
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("hue");
    QTest::addColumn<double>("saturation");
    QTest::addColumn<double>("value");
    QTest::newRow("green") << QColor(0, 255, 0) << 1 / 3.0 << 1.0 << 1.0;
    QTest::newRow("half dark blue") << QColor(0, 0, 51) << 2 / 3.0 << 1.0 << 0.2;
    QTest::newRow("pale red") << QColor(255, 204, 204) << 0.0 << 0.2 << 1.0;
}

void Tst_ColorSquare::colourSetsTheFields() {
    QFETCH(QColor, color);
    QFETCH(double, hue);
    QFETCH(double, saturation);
    QFETCH(double, value);
    ColorSquare square;
    square.SetHue(0.9);
    square.SetColor(color);
    QVERIFY(qAbs(square.hue() - hue) < 1e-3);
    QVERIFY(qAbs(square.saturation() - saturation) < 1e-3);
    QVERIFY(qAbs(square.value() - value) < 1e-3);
    QCOMPARE(square.color(), color);
}

void Tst_ColorSquare::shownColourAgainDoesNothing() {
    ColorSquare square;
    square.SetColor(QColor(10, 20, 30));
    QSignalSpy changed(&square, &ColorSquare::colorChanged);
    square.SetColor(QColor(10, 20, 30));
    square.SetColor(QColor());
    QCOMPARE(changed.count(), 0);
    square.SetColor(QColor(10, 20, 31));
    QCOMPARE(changed.count(), 1);
}

void Tst_ColorSquare::grayKeepsTheHue() {
    ColorSquare square;
    square.SetHue(0.25);
    square.SetColor(QColor(128, 128, 128));
    QCOMPARE(square.hue(), 0.25);
    QCOMPARE(square.saturation(), 0.0);
}

void Tst_ColorSquare::everyColourComesBackUnchanged() {
    ColorSquare square;
    for (int red = 0; red < 256; red += 5) {
        for (int green = 0; green < 256; green += 3) {
            for (int blue = 0; blue < 256; blue += 51) {
                const QColor color(red, green, blue);
                square.SetColor(color);
                if (square.color().rgb() != color.rgb())
                    QFAIL(qPrintable(color.name() + QStringLiteral(" became ") + square.color().name()));
            }
        }
    }
}

void Tst_ColorSquare::slotsBoundTheirValues_data() {
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("taken");
    QTest::newRow("below") << -0.5 << 0.0;
    QTest::newRow("inside") << 0.375 << 0.375;
    QTest::newRow("above") << 1.5 << 1.0;
}

void Tst_ColorSquare::slotsBoundTheirValues() {
    QFETCH(double, given);
    ColorSquare square;
    square.SetHue(given);
    square.SetSaturation(given);
    square.SetValue(given);
    QTEST(square.hue(), "taken");
    QTEST(square.saturation(), "taken");
    QTEST(square.value(), "taken");
}

void Tst_ColorSquare::pixelsAreTheColoursTheyStandFor() {
    ColorSquare square;
    square.resize(64, 50);
    square.SetColor(QColor(0, 0, 0)); // the cursor goes to the bottom left
    square.SetHue(0.6);
    const QImage image = square.grab().toImage();
    for (const QPoint &pixel : {QPoint(0, 0), QPoint(32, 0), QPoint(63, 0), QPoint(63, 25), QPoint(20, 30)}) {
        const QColor expected = QColor::fromHsvF(0.6, pixel.x() / 64.0, 1.0 - pixel.y() / 50.0, 1.0);
        QCOMPARE(image.pixel(pixel), expected.rgb());
    }
    square.SetHue(0.1);
    QCOMPARE(square.grab().toImage().pixel(63, 0), QColor::fromHsvF(0.1, 63 / 64.0, 1.0, 1.0).rgb());
}

void Tst_ColorSquare::keysMoveTheChoice() {
    ColorSquare square;
    square.resize(132, 100);
    square.SetSaturation(0.5);
    square.SetValue(0.5);
    square.show();
    QVERIFY(square.focusPolicy() & Qt::TabFocus);
    QSignalSpy selected(&square, &ColorSquare::colorSelected);
    QTest::keyClick(&square, Qt::Key_Right);
    QTest::keyClick(&square, Qt::Key_Up);
    QVERIFY(qAbs(square.saturation() - 0.51) < 1e-9);
    QVERIFY(qAbs(square.value() - 0.51) < 1e-9);
    QTest::keyClick(&square, Qt::Key_Left);
    QTest::keyClick(&square, Qt::Key_Down);
    QVERIFY(qAbs(square.saturation() - 0.5) < 1e-9);
    QCOMPARE(selected.count(), 4);
    square.SetValue(1.0);
    QTest::keyClick(&square, Qt::Key_Up);
    QCOMPARE(square.value(), 1.0);
    // Others are the panel's: Escape closes it.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&square, &escape);
    QVERIFY(!escape.isAccepted());
    QCOMPARE(selected.count(), 5);
}

QTEST_MAIN(Tst_ColorSquare)
#include "tst_colorsquare.moc"
