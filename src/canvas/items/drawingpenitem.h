#pragma once

#include "canvas/items/drawingfreehanditem.h"

/// A stroke of the round pen. Where segments of a half-transparent colour overlap, the colour builds up.
class DrawingPenItem : public DrawingFreehandItem {
    Q_OBJECT
public:
    DrawingPenItem(const QRectF &sceneRect, QObject *parent);

    void paintSegments(QPainter *painter, int first) const override;

protected:
    void addSegment(const QPointF &from, const QPointF &to) override;
};
