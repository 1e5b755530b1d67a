#include "canvas/items/figuregeometry.h"

#include <QVector2D>

#include <algorithm>

namespace {

constexpr float HeadDepth = 7.0f;
constexpr float HitHeadDepth = 8.0f;

/// Unit vectors of an arrow, in the single precision in which its head is worked out.
struct ArrowVectors {
    ArrowVectors(const QPointF &start, const QPointF &end) {
        const QLineF normalLine = QLineF(end, start).normalVector();
        normal = QVector2D(normalLine.p1() - normalLine.p2()).normalized();
        direction = QVector2D(end - start).normalized();
    }
    QVector2D normal; ///< the direction, turned a quarter
    QVector2D direction;
};

QPolygonF headWithTip(const QPointF &tip, const QPointF &end, const ArrowVectors &vectors, float depth) {
    const QVector2D oneBarb = (vectors.direction + vectors.normal) * depth;
    const QVector2D otherBarb = (vectors.direction - vectors.normal) * depth;
    return {{tip, end - oneBarb.toPointF(), end - otherBarb.toPointF(), tip}};
}

bool isBetween(double low, double value, double high) {
    return low < value && value < high;
}

/// Cuts the range of a line's parameter by one border: the line is inside where `change * t <= room`.
bool narrow(double change, double room, double *from, double *to) {
    if (change == 0)
        return room >= 0;
    if (change < 0)
        *from = std::max(*from, room / change);
    else
        *to = std::min(*to, room / change);
    return *from <= *to;
}

} // namespace

QPolygonF arrowHead(const QPointF &start, const QPointF &end) {
    return headWithTip(end, end, ArrowVectors(start, end), HeadDepth);
}

QPolygonF arrowHitHead(const QPointF &start, const QPointF &end) {
    const ArrowVectors vectors(start, end);
    return headWithTip(end + vectors.direction.toPointF(), end, vectors, HitHeadDepth);
}

QPointF arrowShaftHalfWidth(const QPointF &start, const QPointF &end) {
    const QLineF backwards(end, start);
    // There is no unit vector of a line without length.
    const QLineF unit = backwards.isNull() ? QLineF() : backwards.unitVector();
    const double x = unit.dx();
    if (isBetween(-1.1, x, -0.9) || isBetween(-0.1, x, 0.01))
        return {1, -1};
    if (isBetween(0.0, x, 0.1) || isBetween(0.9, x, 1.1))
        return {1, 1};
    return {x, -unit.dy()};
}

QPolygonF arrowHitArea(const QPointF &start, const QPointF &end) {
    const QPointF half = arrowShaftHalfWidth(start, end);
    const QPolygonF shaft({end - half, end + half, start + half, start - half, end - half});
    return arrowHitHead(start, end).united(shaft);
}

QPolygonF speechBalloonPolygon(const QRectF &rect) {
    const double tailTip = rect.left() + rect.width() * 0.25;
    const double tailEnd = rect.left() + rect.width() * 0.5;
    const double body = rect.top() + rect.height() * 4.0 / 5.0;
    return {{rect.topLeft(),
             {rect.left(), body},
             {tailTip, body},
             {tailTip, rect.bottom()},
             {tailEnd, body},
             {rect.right(), body},
             rect.topRight(),
             rect.topLeft()}};
}

bool clipLine(QLineF *line, const QRectF &rect) {
    double from = 0;
    double to = 1;
    const bool visible = narrow(-line->dx(), line->x1() - rect.left(), &from, &to) &&
                         narrow(line->dx(), rect.right() - line->x1(), &from, &to) &&
                         narrow(-line->dy(), line->y1() - rect.top(), &from, &to) &&
                         narrow(line->dy(), rect.bottom() - line->y1(), &from, &to);
    if (visible)
        *line = QLineF(line->pointAt(from), line->pointAt(to));
    return visible;
}
