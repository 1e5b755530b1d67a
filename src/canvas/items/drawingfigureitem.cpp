#include "canvas/items/drawingfigureitem.h"

#include "canvas/shiftgeometry.h"

#include <QPainter>

namespace {

/// How far a mark can reach beyond the points of its outline, in widths of the pen: a mitred corner goes on
/// for up to two widths (the pen's miter limit) along an edge that lies half a width aside.
constexpr double MiterReach = 2.1;
/// What antialiasing adds to that.
constexpr double PixelBorder = 1.0;

} // namespace

DrawingFigureItem::DrawingFigureItem(ShiftRule rule, const DrawingAttributes &attributes,
                                     const QRectF &sceneRect, QObject *parent)
    : DrawingItem(attributes, sceneRect, parent), m_rule(rule) {}

QPainterPath DrawingFigureItem::shape() const {
    return clippedHitArea(m_hitPath);
}

QRectF DrawingFigureItem::paintedRect() const {
    return markedRect().intersected(m_sceneRect);
}

QRectF DrawingFigureItem::extent() const {
    return DrawingItem::extent().united(markedRect());
}

// With all that the pen adds to the outline.
QRectF DrawingFigureItem::markedRect() const {
    const double margin = MiterReach * m_lineWidth + PixelBorder;
    return outlineRect().adjusted(-margin, -margin, margin, margin);
}

void DrawingFigureItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) {
    if (isOmitted())
        return;
    painter->save();
    painter->setPen(figurePen(static_cast<Qt::PenStyle>(m_lineStyle)));
    painter->setClipRect(m_sceneRect, Qt::ReplaceClip);
    drawFigure(painter);
    painter->restore();
}

QRectF DrawingFigureItem::drawStart(QPoint pos) {
    m_startPoint = pos;
    m_endPoint = pos;
    m_itemRect = QRectF(m_startPoint, m_endPoint).normalized();
    return boundingRect();
}

QRectF DrawingFigureItem::drawMove(QPoint lastPos, QPoint pos, bool shift) {
    stretch(lastPos, pos, shift);
    return boundingRect();
}

QRectF DrawingFigureItem::drawEnd(QPoint, QPoint pos, bool shift) {
    prepareGeometryChange();
    stretch(pos, pos, shift);
    addHitArea(&m_hitPath);
    return boundingRect();
}

void DrawingFigureItem::drawFinish(bool) {}

QPen DrawingFigureItem::figurePen(Qt::PenStyle style) const {
    return itemPen(m_lineWidth, style, ItemPenCap);
}

void DrawingFigureItem::stretch(const QPointF &measured, const QPointF &pos, bool shift) {
    m_endPoint = pos;
    if (m_rule == ShiftRule::Direction) {
        if (shift)
            m_endPoint = constrainedToDirection(m_startPoint, measured);
        m_itemRect = QRectF(m_startPoint, shift ? m_endPoint : measured).normalized();
    } else {
        m_itemRect = withoutZeroSize(shift ? squareConstraint(m_startPoint, measured)
                                           : QRectF(m_startPoint, measured));
    }
    placed();
}
