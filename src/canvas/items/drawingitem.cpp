#include "canvas/items/drawingitem.h"

#include <QPainterPath>

DrawingItem::DrawingItem(const DrawingAttributes &attributes, const QRectF &sceneRect, QObject *parent)
    : QObject(parent), m_lineColor(attributes.lineColor), m_fillColor(attributes.fillColor),
      m_lineWidth(attributes.lineWidth), m_lineStyle(attributes.lineStyle), m_sceneRect(sceneRect) {}

QRectF DrawingItem::boundingRect() const {
    return DrawingItem::extent().intersected(m_sceneRect);
}

QRectF DrawingItem::extent() const {
    const qreal margin = m_lineWidth + 1;
    return m_itemRect.normalized().adjusted(-margin, -margin, margin, margin);
}

void DrawingItem::onChangeSceneRect(QRectF sceneRect) {
    m_sceneRect = sceneRect;
}

QPen DrawingItem::itemPen(qreal width, Qt::PenStyle style, Qt::PenCapStyle cap) const {
    return QPen(QBrush(m_lineColor, Qt::SolidPattern), width, style, cap, Qt::MiterJoin);
}

QPainterPath DrawingItem::clippedHitArea(const QPainterPath &hitPath) const {
    QPainterPath visible;
    visible.addRect(m_sceneRect);
    return hitPath.intersected(visible);
}
