#pragma once

#include "preferences/tindrapreferences.h"

#include <QColor>

/// The settings of a tool as they stand when an item is built; later changes do not reach the item.
struct DrawingAttributes {
    QColor lineColor = Qt::transparent;
    QColor fillColor = Qt::transparent;
    int lineWidth = 1; ///< image pixels
    int lineStyle = 1; ///< `Qt::PenStyle`

    /// Line, arrow, rectangle, circle, balloon.
    static DrawingAttributes forFigure();
    /// The `Qt::PenStyle` of the next figure.
    static int figureLineStyle();
    /// Pen and highlighter: always solid.
    static DrawingAttributes forFreehand(TindraPreferences::Id color);
};
