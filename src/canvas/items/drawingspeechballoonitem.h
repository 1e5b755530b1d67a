#pragma once

#include "canvas/items/drawingfigureitem.h"

/// A speech balloon whose tail always points to the bottom left, whatever the direction of the drag. Hit
/// anywhere in its rectangle, beside the tail included.
class DrawingSpeechBalloonItem : public DrawingFigureItem {
    Q_OBJECT
public:
    DrawingSpeechBalloonItem(const QRectF &sceneRect, QObject *parent);

protected:
    void addHitArea(QPainterPath *path) override;
    void drawFigure(QPainter *painter) const override;
};
