#include "app/toolselection.h"

#include "canvas/editorview.h"
#include "services/usagestatistics.h"

namespace {

struct Event {
    int value;
    const char *code;
};

template <std::size_t Count> void reportValue(const Event (&events)[Count], int value) {
    for (const Event &event : events) {
        if (event.value == value)
            recordUsage(event.code);
    }
}

} // namespace

void ToolSelection::setShape(ShapeTypes::ShapeType shape) {
    if (Editor *editor = m_view->editor())
        editor->setShape(shape);
}

void ToolSelection::remember(ShapeTypes::ShapeType shape) {
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, shape);
}

// Reports a colour that is neither the one of before nor the one that everybody starts with. A panel without
// a chosen swatch tells no colour, and the remembered one stays.
void ToolSelection::storeColor(TindraPreferences::Id id, const QColor &color, const char *event) {
    if (!color.isValid())
        return;
    TindraPreferences *preferences = TindraPreferences::instance();
    const int value = TindraPreferences::colorToInt(color);
    const int defaultValue = TindraPreferences::defaultInt(id);
    if (value != preferences->GetInt(id, defaultValue) && value != defaultValue)
        recordUsage(event);
    preferences->SetInt(id, value);
}

void ToolSelection::selectFigure(ShapeTypes::ShapeType shape, Qt::PenStyle line, const QColor &fill,
                                 const QColor &lineColor) {
    setShape(shape);
    remember(shape);
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->SetInt(TindraPreferences::FigureType, shape);
    preferences->SetInt(TindraPreferences::FigureLineType, line);
    storeColor(TindraPreferences::FigureFillColor, fill, "cap_303_14");
    storeColor(TindraPreferences::FigureLineColor, lineColor, "cap_303_13");
}

void ToolSelection::selectPen(const QColor &color) {
    setShape(ShapeTypes::Pen);
    remember(ShapeTypes::Pen);
    storeColor(TindraPreferences::PenColor, color, "cap_303_15");
}

void ToolSelection::selectHighlighter(const QColor &color) {
    setShape(ShapeTypes::Highlighter);
    remember(ShapeTypes::Highlighter);
    storeColor(TindraPreferences::HighlighterColor, color, "cap_303_16");
}

void ToolSelection::selectLineWidth(int width) {
    static const Event events[] = {
        {1, "cap_30_14"}, {3, "cap_30_15"}, {5, "cap_30_16"}, {8, "cap_30_17"}, {12, "cap_30_18"}};
    reportValue(events, width);
    TindraPreferences::instance()->SetInt(TindraPreferences::LineWidth, width);
}

void ToolSelection::selectText() {
    setShape(ShapeTypes::Text);
    remember(ShapeTypes::Text);
}

void ToolSelection::selectMosaic(int strength) {
    static const Event events[] = {{4, "cap_30_06"}, {6, "cap_30_07"}, {9, "cap_30_08"}};
    setShape(ShapeTypes::Mosaic);
    remember(ShapeTypes::Mosaic);
    reportValue(events, strength);
    TindraPreferences::instance()->SetInt(TindraPreferences::MosaicStrength, strength);
}

void ToolSelection::selectCrop() {
    setShape(ShapeTypes::Crop);
    if (Editor *editor = m_view->editor())
        editor->startCrop();
}

void ToolSelection::selectEraser() {
    setShape(ShapeTypes::Eraser);
}
