#include "popups/itembutton.h"
#include "popups/linewidthbutton.h"
#include "ui/uistyler.h"

#include <QImage>
#include <QTest>

class Tst_LineWidthButton : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { UIStyler::setColorsIniPath(qApp, QStringLiteral(":/style/editor_variables.ini")); }
    void textTellsTheWidth_data();
    void textTellsTheWidth();
    void barIsAsThickAsTheLine_data();
    void barIsAsThickAsTheLine();
    void cursors();
};

void Tst_LineWidthButton::textTellsTheWidth_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("1") << 1 << QStringLiteral("1px");
    QTest::newRow("12") << 12 << QStringLiteral("12px");
}

void Tst_LineWidthButton::textTellsTheWidth() {
    QFETCH(int, value);
    LineWidthButton button;
    button.setValue(value);
    QTEST(button.text(), "text");
    QCOMPARE(button.value(), value);
}

void Tst_LineWidthButton::barIsAsThickAsTheLine_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("checked");
    for (const int value : {2, 8, 12}) {
        QTest::addRow("%d", value) << value << false;
        QTest::addRow("%d checked", value) << value << true;
    }
}

void Tst_LineWidthButton::barIsAsThickAsTheLine() {
    QFETCH(int, value);
    QFETCH(bool, checked);
    LineWidthButton button;
    button.setStyleSheet(QStringLiteral("* { background-color: white; color: transparent; border: none;"
                                        " padding-left: 10px; min-width: 0px; min-height: 0px; }"));
    button.setCheckable(true);
    button.setChecked(checked);
    button.setValue(value);
    button.resize(200, 30);
    const QImage image = button.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb ink = checked ? qRgb(0, 127, 245) : qRgb(0, 0, 0);
    // From x = 10 over 0.47 * 200 = 94 pixels, and over `value` rows around the middle.
    const QRect bar(10, (30 - value) / 2, 94, value);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb expected = bar.contains(x, y) ? ink : qRgb(255, 255, 255);
            if (image.pixel(x, y) != expected)
                QFAIL(qPrintable(QStringLiteral("%1, %2: %3").arg(x).arg(y).arg(image.pixel(x, y), 0, 16)));
        }
    }
}

void Tst_LineWidthButton::cursors() {
    QCOMPARE(LineWidthButton().cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(ItemButton().cursor().shape(), Qt::PointingHandCursor);
}

QTEST_MAIN(Tst_LineWidthButton)
#include "tst_linewidthbutton.moc"
