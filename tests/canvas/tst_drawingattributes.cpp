#include "canvas/capturefixture.h"
#include "canvas/items/drawingattributes.h"

#include <QtTest>

class Tst_DrawingAttributes : public QObject {
    Q_OBJECT
private slots:
    void init() { capture::resetWorld(); }

    void figureWithDefaultSettings();
    void figureTakesItsSettings();
    void freehandTakesColourAndWidthOnly_data();
    void freehandTakesColourAndWidthOnly();
    void widthThatNoPanelOffers_data();
    void widthThatNoPanelOffers();
    void styleThatIsNoneGivesASolidLine_data();
    void styleThatIsNoneGivesASolidLine();
    void finishedSettingsStay();
    void noSettingsDrawNothing();
};

namespace {

void set(TindraPreferences::Id id, int value) {
    TindraPreferences::instance()->SetInt(id, value);
}

} // namespace

void Tst_DrawingAttributes::figureWithDefaultSettings() {
    const DrawingAttributes attributes = DrawingAttributes::forFigure();
    QCOMPARE(attributes.lineColor, QColor(255, 0, 0, 255));
    QCOMPARE(attributes.fillColor.alpha(), 0);
    QCOMPARE(attributes.lineWidth, 3);
    QCOMPARE(attributes.lineStyle, 1);
}

void Tst_DrawingAttributes::figureTakesItsSettings() {
    // Red in the low byte, then green, blue, alpha.
    set(TindraPreferences::FigureLineColor, 0x40302010);
    set(TindraPreferences::FigureFillColor, 0x50090807);
    set(TindraPreferences::LineWidth, 8);
    set(TindraPreferences::FigureLineType, 3);
    const DrawingAttributes attributes = DrawingAttributes::forFigure();
    QCOMPARE(attributes.lineColor, QColor(0x10, 0x20, 0x30, 0x40));
    QCOMPARE(attributes.fillColor, QColor(0x07, 0x08, 0x09, 0x50));
    QCOMPARE(attributes.lineWidth, 8);
    QCOMPARE(attributes.lineStyle, 3);
}

void Tst_DrawingAttributes::freehandTakesColourAndWidthOnly_data() {
    QTest::addColumn<int>("colorSetting");
    QTest::addColumn<QColor>("byDefault");
    QTest::newRow("pen") << int(TindraPreferences::PenColor) << QColor(255, 0, 0, 255);
    QTest::newRow("highlighter") << int(TindraPreferences::HighlighterColor) << QColor(255, 240, 0, 255);
}

void Tst_DrawingAttributes::freehandTakesColourAndWidthOnly() {
    QFETCH(int, colorSetting);
    QFETCH(QColor, byDefault);
    const auto setting = static_cast<TindraPreferences::Id>(colorSetting);
    QCOMPARE(DrawingAttributes::forFreehand(setting).lineColor, byDefault);
    QCOMPARE(DrawingAttributes::forFreehand(setting).lineWidth, 3);
    set(setting, 0x40302010);
    set(TindraPreferences::LineWidth, 12);
    // Those of the figures are not for strokes.
    set(TindraPreferences::FigureFillColor, 0x50090807);
    set(TindraPreferences::FigureLineType, 3);
    const DrawingAttributes attributes = DrawingAttributes::forFreehand(setting);
    QCOMPARE(attributes.lineColor, QColor(0x10, 0x20, 0x30, 0x40));
    QCOMPARE(attributes.fillColor.alpha(), 0);
    QCOMPARE(attributes.lineWidth, 12);
    QCOMPARE(attributes.lineStyle, 1);
}

void Tst_DrawingAttributes::widthThatNoPanelOffers_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("drawn");
    QTest::newRow("between the panel's") << 2 << 2;
    QTest::newRow("wide") << 100 << 100;
    QTest::newRow("none") << 0 << 3;
    QTest::newRow("below none") << -2 << 3;
    QTest::newRow("beyond reason") << 101 << 3;
    QTest::newRow("most") << std::numeric_limits<int>::max() << 3;
}

void Tst_DrawingAttributes::widthThatNoPanelOffers() {
    QFETCH(int, stored);
    set(TindraPreferences::LineWidth, stored);
    QTEST(DrawingAttributes::forFigure().lineWidth, "drawn");
    QTEST(DrawingAttributes::forFreehand(TindraPreferences::HighlighterColor).lineWidth, "drawn");
}

void Tst_DrawingAttributes::styleThatIsNoneGivesASolidLine_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("drawn");
    QTest::newRow("dashed") << 2 << 2;
    QTest::newRow("last") << 5 << 5;
    QTest::newRow("invisible") << 0 << 1;
    QTest::newRow("beyond the last") << 6 << 1;
    QTest::newRow("negative") << -5 << 1;
    QTest::newRow("most") << std::numeric_limits<int>::max() << 1;
}

void Tst_DrawingAttributes::styleThatIsNoneGivesASolidLine() {
    QFETCH(int, stored);
    set(TindraPreferences::FigureLineType, stored);
    QTEST(DrawingAttributes::forFigure().lineStyle, "drawn");
}

void Tst_DrawingAttributes::finishedSettingsStay() {
    const DrawingAttributes before = DrawingAttributes::forFigure();
    set(TindraPreferences::LineWidth, 12);
    QCOMPARE(before.lineWidth, 3);
    QCOMPARE(DrawingAttributes::forFigure().lineWidth, 12);
}

void Tst_DrawingAttributes::noSettingsDrawNothing() {
    const DrawingAttributes attributes;
    QCOMPARE(attributes.lineColor.alpha(), 0);
    QCOMPARE(attributes.fillColor.alpha(), 0);
    QCOMPARE(attributes.lineWidth, 1);
    QCOMPARE(attributes.lineStyle, 1);
}

QTEST_MAIN(Tst_DrawingAttributes)
#include "tst_drawingattributes.moc"
