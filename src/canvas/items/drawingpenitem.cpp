#include "canvas/items/drawingpenitem.h"

#include <QPainter>

DrawingPenItem::DrawingPenItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFreehandItem(TindraPreferences::PenColor, sceneRect, parent) {}

void DrawingPenItem::paintSegments(QPainter *painter, int first) const {
    painter->save();
    painter->setPen(itemPen(m_lineWidth, Qt::SolidLine, ItemPenCap));
    painter->setBrush(Qt::transparent);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipRect(m_sceneRect, Qt::ReplaceClip);
    drawSegments(painter, first);
    painter->restore();
}

void DrawingPenItem::addSegment(const QPointF &from, const QPointF &to) {
    appendLine(QLineF(from, to));
}
