#include "canvas/items/drawinglineitem.h"

#include "canvas/items/figuregeometry.h"

#include <QPainter>

DrawingLineItem::DrawingLineItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFigureItem(ShiftRule::Direction, DrawingAttributes::forFigure(), sceneRect, parent) {}

// Cut by hand: the intersection of paths is one of areas and loses a line along an axis.
QPainterPath DrawingLineItem::shape() const {
    QLineF visible(m_startPoint, m_endPoint);
    QPainterPath path;
    if (m_hitPath.isEmpty() || !clipLine(&visible, m_sceneRect))
        return path;
    path.moveTo(visible.p1());
    path.lineTo(visible.p2());
    return path;
}

void DrawingLineItem::addHitArea(QPainterPath *path) {
    path->moveTo(m_startPoint);
    path->lineTo(m_endPoint);
}

QRectF DrawingLineItem::outlineRect() const {
    return QRectF(m_startPoint, m_endPoint).normalized();
}

void DrawingLineItem::drawFigure(QPainter *painter) const {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::transparent);
    painter->drawLine(QLineF(m_startPoint, m_endPoint));
}
