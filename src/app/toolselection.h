#pragma once

#include "canvas/shapetype.h"
#include "preferences/tindrapreferences.h"

#include <Qt>

class EditorView;

/// Carries out the choice of a tool: tells the scene that is shown, remembers the choice in the
/// preferences, and reports what the usage statistics want to know.
///
/// The eraser and the crop are never remembered: the next capture begins with the last drawing tool.
class ToolSelection {
public:
    explicit ToolSelection(EditorView *view) : m_view(view) {}

    void selectFigure(ShapeTypes::ShapeType shape, Qt::PenStyle line, const QColor &fill,
                      const QColor &lineColor);
    void selectPen(const QColor &color);
    void selectHighlighter(const QColor &color);
    void selectLineWidth(int width);
    void selectText();
    void selectMosaic(int strength);
    void selectCrop();
    void selectEraser();

private:
    void setShape(ShapeTypes::ShapeType shape);
    void remember(ShapeTypes::ShapeType shape);
    void storeColor(TindraPreferences::Id id, const QColor &color, const char *event);

    EditorView *m_view;
};
