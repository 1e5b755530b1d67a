#include "canvas/items/drawingcircleitem.h"

#include <QPainter>

DrawingCircleItem::DrawingCircleItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFigureItem(ShiftRule::Square, DrawingAttributes::forFigure(), sceneRect, parent) {}

void DrawingCircleItem::addHitArea(QPainterPath *path) {
    *path = QPainterPath();
    path->addEllipse(m_itemRect);
}

void DrawingCircleItem::drawFigure(QPainter *painter) const {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(m_fillColor);
    painter->drawEllipse(m_itemRect);
}
