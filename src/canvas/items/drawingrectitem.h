#pragma once

#include "canvas/items/drawingfigureitem.h"

/// A rectangle. The one figure without antialiasing, so that a solid outline stays crisp. Hit anywhere
/// inside, whatever its fill.
class DrawingRectItem : public DrawingFigureItem {
    Q_OBJECT
public:
    DrawingRectItem(const QRectF &sceneRect, QObject *parent);

protected:
    void addHitArea(QPainterPath *path) override;
    void drawFigure(QPainter *painter) const override;
};
