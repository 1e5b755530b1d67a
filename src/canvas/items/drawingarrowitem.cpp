#include "canvas/items/drawingarrowitem.h"

#include "canvas/items/figuregeometry.h"

#include <QPainter>

namespace {

/// What the item's rectangle leaves around the head.
constexpr double HeadMargin = 2.0;
/// How much larger than the bounding rectangle the area is that a drag reports.
constexpr double ReportedMargin = 7.0;

QRectF grown(const QRectF &rect, double margin) {
    return rect.adjusted(-margin, -margin, margin, margin);
}

} // namespace

DrawingArrowItem::DrawingArrowItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFigureItem(ShiftRule::Direction, DrawingAttributes::forFigure(), sceneRect, parent) {}

QRectF DrawingArrowItem::drawMove(QPoint lastPos, QPoint pos, bool shift) {
    return grown(DrawingFigureItem::drawMove(lastPos, pos, shift), ReportedMargin);
}

QRectF DrawingArrowItem::drawEnd(QPoint lastPos, QPoint pos, bool shift) {
    return grown(DrawingFigureItem::drawEnd(lastPos, pos, shift), ReportedMargin);
}

void DrawingArrowItem::placed() {
    m_headPolygon = arrowHead(m_startPoint, m_endPoint);
    m_itemRect = m_itemRect.united(grown(m_headPolygon.boundingRect(), HeadMargin));
}

void DrawingArrowItem::addHitArea(QPainterPath *path) {
    m_itemRect = m_itemRect.united(arrowHitHead(m_startPoint, m_endPoint).boundingRect());
    path->addPolygon(arrowHitArea(m_startPoint, m_endPoint));
}

QRectF DrawingArrowItem::outlineRect() const {
    const QRectF shaft = QRectF(m_startPoint, m_endPoint).normalized();
    return m_headPolygon.isEmpty() ? shaft : shaft.united(m_headPolygon.boundingRect());
}

void DrawingArrowItem::drawFigure(QPainter *painter) const {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(m_lineColor);
    painter->drawLine(QLineF(m_startPoint, m_endPoint));
    painter->setPen(figurePen(Qt::SolidLine));
    painter->drawPolygon(m_headPolygon, Qt::OddEvenFill);
}
