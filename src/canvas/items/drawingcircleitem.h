#pragma once

#include "canvas/items/drawingfigureitem.h"

/// The ellipse that fills the rectangle of the drag. Hit anywhere inside, whatever its fill.
class DrawingCircleItem : public DrawingFigureItem {
    Q_OBJECT
public:
    DrawingCircleItem(const QRectF &sceneRect, QObject *parent);

protected:
    void addHitArea(QPainterPath *path) override;
    void drawFigure(QPainter *painter) const override;
};
