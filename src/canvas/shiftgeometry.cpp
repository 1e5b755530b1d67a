#include "canvas/shiftgeometry.h"

#include <algorithm>
#include <cmath>

namespace {

// Sines of 22.5 and 67.5 degrees as the boundaries between an axis and a diagonal, to four places.
constexpr double HorizontalSine = 0.3826;
constexpr double VerticalSine = 0.9238;

QPointF onFallingDiagonal(const QPointF &from, const QPointF &to) {
    const double rise = std::abs(from.y() - to.y());
    if (from.y() > to.y()) {
        const int leg = static_cast<int>(std::max(rise, from.x() - to.x()));
        return from - QPointF(leg, leg);
    }
    const int leg = static_cast<int>(std::max(rise, to.x() - from.x()));
    return from + QPointF(leg, leg);
}

QPointF onRisingDiagonal(const QPointF &from, const QPointF &to) {
    const double rise = std::abs(from.y() - to.y());
    if (from.y() > to.y()) {
        const int leg = static_cast<int>(std::max(rise, to.x() - from.x()));
        return from + QPointF(leg, -leg);
    }
    const int leg = static_cast<int>(std::max(rise, from.x() - to.x()));
    return from + QPointF(-leg, leg);
}

} // namespace

ShiftDirection shiftDirection(const QPointF &from, const QPointF &to) {
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    if (dy == 0)
        return ShiftDirection::Horizontal;
    if (dx == 0)
        return ShiftDirection::Vertical;
    const double sine = std::abs(dy) / std::sqrt(dx * dx + dy * dy);
    if (sine <= HorizontalSine)
        return ShiftDirection::Horizontal;
    if (sine >= VerticalSine)
        return ShiftDirection::Vertical;
    return (dx > 0) == (dy > 0) ? ShiftDirection::FallingRight : ShiftDirection::RisingRight;
}

QPointF constrainedToDirection(const QPointF &from, const QPointF &to, ShiftDirection direction) {
    if (direction == ShiftDirection::None)
        direction = shiftDirection(from, to);
    switch (direction) {
    case ShiftDirection::Vertical:
        return {from.x(), to.y()};
    case ShiftDirection::Horizontal:
        return {to.x(), from.y()};
    case ShiftDirection::FallingRight:
        return onFallingDiagonal(from, to);
    case ShiftDirection::RisingRight:
    case ShiftDirection::None: // found above
        break;
    }
    return onRisingDiagonal(from, to);
}

QRectF squareConstraint(const QPointF &from, const QPointF &to) {
    const int side = static_cast<int>(std::min(std::abs(to.x() - from.x()), std::abs(to.y() - from.y())));
    const double left = to.x() > from.x() ? from.x() : from.x() - side;
    const double top = to.y() > from.y() ? from.y() : from.y() - side;
    return {left, top, static_cast<double>(side), static_cast<double>(side)};
}

QRectF withoutZeroSize(const QRectF &rect) {
    QRectF result = rect.normalized();
    if (result.width() == 0)
        result.setWidth(1.0);
    if (result.height() == 0)
        result.setHeight(1.0);
    return result;
}
