#include "canvas/items/drawingrectitem.h"

#include <QPainter>

DrawingRectItem::DrawingRectItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFigureItem(ShiftRule::Square, DrawingAttributes::forFigure(), sceneRect, parent) {}

void DrawingRectItem::addHitArea(QPainterPath *path) {
    *path = QPainterPath();
    path->addRect(m_itemRect);
}

void DrawingRectItem::drawFigure(QPainter *painter) const {
    painter->setBrush(m_fillColor);
    painter->drawRect(m_itemRect);
}
