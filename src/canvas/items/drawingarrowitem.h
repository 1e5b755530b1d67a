#pragma once

#include "canvas/items/drawingfigureitem.h"

#include <QPolygonF>

/// An arrow with its head at the release. The head has one size whatever the width of the line, and a solid
/// outline whatever its style.
class DrawingArrowItem : public DrawingFigureItem {
    Q_OBJECT
public:
    DrawingArrowItem(const QRectF &sceneRect, QObject *parent);

    QPolygonF headPolygon() const { return m_headPolygon; }

    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;

protected:
    void placed() override;
    void addHitArea(QPainterPath *path) override;
    QRectF outlineRect() const override;
    void drawFigure(QPainter *painter) const override;

private:
    QPolygonF m_headPolygon;
};
