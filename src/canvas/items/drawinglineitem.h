#pragma once

#include "canvas/items/drawingfigureitem.h"

/// A straight line. Hit only within a pixel or so of it, whatever its width.
class DrawingLineItem : public DrawingFigureItem {
    Q_OBJECT
public:
    DrawingLineItem(const QRectF &sceneRect, QObject *parent);

    QPainterPath shape() const override;

protected:
    void addHitArea(QPainterPath *path) override;
    QRectF outlineRect() const override;
    void drawFigure(QPainter *painter) const override;
};
