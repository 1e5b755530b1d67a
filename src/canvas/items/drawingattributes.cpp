#include "canvas/items/drawingattributes.h"

namespace {

constexpr int DefaultLineWidth = 3;
constexpr int SolidLine = 1;

/// A settings file can hold any number, but a highlighter draws as many lines as the width says.
constexpr int WidestLine = 100;

int lineWidthSetting() {
    const int stored = TindraPreferences::instance()->GetInt(TindraPreferences::LineWidth, DefaultLineWidth);
    return stored >= 1 && stored <= WidestLine ? stored : DefaultLineWidth;
}

} // namespace

DrawingAttributes DrawingAttributes::forFigure() {
    const TindraPreferences &preferences = *TindraPreferences::instance();
    DrawingAttributes attributes;
    attributes.lineColor = preferences.color(TindraPreferences::FigureLineColor);
    attributes.fillColor = preferences.color(TindraPreferences::FigureFillColor);
    attributes.lineWidth = lineWidthSetting();
    attributes.lineStyle = preferences.GetInt(TindraPreferences::FigureLineType, SolidLine);
    return attributes;
}

DrawingAttributes DrawingAttributes::forFreehand(TindraPreferences::Id color) {
    DrawingAttributes attributes;
    attributes.lineColor = TindraPreferences::instance()->color(color);
    attributes.fillColor = TindraPreferences::colorFromInt(
        TindraPreferences::defaultInt(TindraPreferences::FigureFillColor), true);
    attributes.lineWidth = lineWidthSetting();
    return attributes;
}
