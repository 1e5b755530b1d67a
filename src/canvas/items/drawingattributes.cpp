#include "canvas/items/drawingattributes.h"

namespace {

constexpr int DefaultLineWidth = 3;

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
    attributes.lineStyle = figureLineStyle();
    return attributes;
}

/// A settings file can hold any number, but a style that is none draws nothing.
int DrawingAttributes::figureLineStyle() {
    const int stored =
        TindraPreferences::instance()->GetInt(TindraPreferences::FigureLineType, Qt::SolidLine);
    return stored >= Qt::SolidLine && stored <= Qt::DashDotDotLine ? stored : Qt::SolidLine;
}

DrawingAttributes DrawingAttributes::forFreehand(TindraPreferences::Id color) {
    DrawingAttributes attributes;
    attributes.lineColor = TindraPreferences::instance()->color(color);
    attributes.fillColor = TindraPreferences::colorFromInt(
        TindraPreferences::defaultInt(TindraPreferences::FigureFillColor), true);
    attributes.lineWidth = lineWidthSetting();
    return attributes;
}
