#pragma once

#include <QPointF>
#include <QRectF>

/// What the Shift key makes of a drag. Points are image pixels; y grows downwards.

/// The direction of a stroke that Shift holds straight. The numbers are those of the drawing items' state.
enum class ShiftDirection {
    None = 0,
    Vertical = 1,     ///< x is kept
    Horizontal = 2,   ///< y is kept
    FallingRight = 3, ///< the diagonal from top left to bottom right
    RisingRight = 4   ///< the diagonal from bottom left to top right
};

/// The direction nearest to the way from `from` to `to`; horizontal if the two are the same point.
ShiftDirection shiftDirection(const QPointF &from, const QPointF &to);

/// `to` moved onto the line through `from` in that direction; `None` takes the nearest direction. A diagonal
/// takes the longer leg, so the result can lie further away than `to`.
QPointF constrainedToDirection(const QPointF &from, const QPointF &to,
                               ShiftDirection direction = ShiftDirection::None);

/// The square that a drag from `from` to `to` spans with Shift: side of the shorter leg, whole pixels, on
/// the side of `from` on which `to` lies.
QRectF squareConstraint(const QPointF &from, const QPointF &to);

/// The rectangle normalised, with a width or height of exactly 0 replaced by 1, so that an area figure
/// dragged along one axis is still there.
QRectF withoutZeroSize(const QRectF &rect);
