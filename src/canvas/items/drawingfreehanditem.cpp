#include "canvas/items/drawingfreehanditem.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

const QPointF NoPoint(-1, -1);

/// Either coordinate is enough, so a run from the row or column just outside the picture takes each move for
/// its first step and bends with the mouse. Kept, so that the same moves make the same drawing in every
/// release.
bool hasUnsetCoordinate(const QPointF &point) {
    return point.x() == -1 || point.y() == -1;
}

QRectF hitRect(const QLineF &line) {
    return QRectF(QRect(line.p1().toPoint(), line.p2().toPoint()).normalized());
}

QPainterPath rectangle(const QRectF &rect) {
    QPainterPath path;
    path.addRect(rect);
    return path;
}

} // namespace

DrawingFreehandItem::DrawingFreehandItem(TindraPreferences::Id color, const QRectF &sceneRect,
                                         QObject *parent)
    : DrawingItem(DrawingAttributes::forFreehand(color), sceneRect, parent) {}

QRectF DrawingFreehandItem::segmentsRect(int first) const {
    double left = 0, top = 0, right = 0, bottom = 0;
    for (int i = first; i < m_lines.size(); ++i) {
        const QLineF &line = m_lines.at(i);
        const bool begins = i == first;
        left = std::min({begins ? line.x1() : left, line.x1(), line.x2()});
        top = std::min({begins ? line.y1() : top, line.y1(), line.y2()});
        right = std::max({begins ? line.x1() : right, line.x1(), line.x2()});
        bottom = std::max({begins ? line.y1() : bottom, line.y1(), line.y2()});
    }
    if (first >= m_lines.size())
        return QRectF();
    const double margin = m_lineWidth + 1;
    return QRectF(QPointF(left, top), QPointF(right, bottom))
        .adjusted(-margin, -margin, margin, margin)
        .intersected(m_sceneRect);
}

QPainterPath DrawingFreehandItem::shape() const {
    QPainterPath path;
    for (const QLineF &line : m_lines)
        path.addRect(hitRect(line));
    return path;
}

const SegmentIndex &DrawingFreehandItem::index() const {
    for (; m_indexedSegments < m_lines.size(); ++m_indexedSegments) {
        const QRectF rect = hitRect(m_lines.at(m_indexedSegments));
        // A path takes no null rectangles.
        if (!rect.isNull())
            m_index.add(rect);
    }
    return m_index;
}

// What lies elsewhere adds nothing to the answers of a path about that area: neither an edge nor, as both its
// sides are crossed or none is, a turn around a point.
QPainterPath DrawingFreehandItem::shapeNear(const QRectF &area) const {
    QPainterPath path;
    for (const QRectF &rect : index().near(area))
        path.addRect(rect);
    return path;
}

bool DrawingFreehandItem::contains(const QPointF &point) const {
    return shapeNear(QRectF(point, QSizeF(0, 0))).contains(point);
}

bool DrawingFreehandItem::collidesWithPath(const QPainterPath &path, Qt::ItemSelectionMode mode) const {
    const QRectF area = path.controlPointRect();
    // The toolkit compares two rectangles in a way of their own, and a shape of one segment is one.
    if (mode != Qt::IntersectsItemShape || path != rectangle(area) || area.isEmpty() ||
        boundingRect().isEmpty() || index().count() < 2)
        return DrawingItem::collidesWithPath(path, mode);
    return boundingRect().intersects(area) && shapeNear(area).intersects(area);
}

bool DrawingFreehandItem::isHit(const QRectF &area) const {
    // The rectangle of a segment reaches one pixel beyond its points.
    return m_itemRect.adjusted(-1, -1, 1, 1).intersects(area) && shapeNear(area).intersects(area);
}

void DrawingFreehandItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) {
    paintSegments(painter, 0);
}

QRectF DrawingFreehandItem::drawStart(QPoint pos) {
    addSegment(pos, pos);
    // Set outright: uniting rectangles without extent, such as those of single points, gives nothing.
    m_itemRect = QRectF(m_lines.first().p1(), m_lines.last().p1()).normalized();
    return boundingRect();
}

QRectF DrawingFreehandItem::drawMove(QPoint lastPos, QPoint pos, bool shift) {
    QPointF from = lastPos;
    QPointF to = pos;
    applyShift(from, to, shift);
    addSegment(from, to);
    return boundingRect();
}

// A last move like any other. No prepareGeometryChange: the scene keeps no index, and the announcement of
// the old bounding rectangle would repaint the whole stroke at the release although only its end is new.
QRectF DrawingFreehandItem::drawEnd(QPoint lastPos, QPoint pos, bool shift) {
    return drawMove(lastPos, pos, shift);
}

void DrawingFreehandItem::drawFinish(bool) {}

void DrawingFreehandItem::appendLine(const QLineF &line) {
    m_lines.append(line);
    m_itemRect = m_itemRect.united(QRectF(line.p1(), line.p2()).normalized());
}

void DrawingFreehandItem::drawSegments(QPainter *painter, int first) const {
    for (int i = first; i < m_lines.size(); ++i) {
        const QLineF &line = m_lines.at(i);
        if (line.isNull())
            painter->drawPoint(line.p1());
        else
            painter->drawLine(line);
    }
}

void DrawingFreehandItem::applyShift(QPointF &from, QPointF &to, bool shift) {
    if (shift) {
        if (hasUnsetCoordinate(m_shiftAnchor)) {
            m_shiftAnchor = from;
            m_shiftDirection = shiftDirection(from, to);
        }
        from = m_shiftAnchor;
        to = constrainedToDirection(m_shiftAnchor, to, m_shiftDirection);
        m_shiftEnd = to;
    } else if (!hasUnsetCoordinate(m_shiftAnchor)) {
        // The free stroke goes on where the straight run ended, not where the mouse was.
        if (!hasUnsetCoordinate(m_shiftEnd))
            from = m_shiftEnd;
        m_shiftAnchor = NoPoint;
        m_shiftEnd = NoPoint;
    }
}
