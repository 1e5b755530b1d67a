#pragma once

#include <QLineF>
#include <QPolygonF>
#include <QRectF>

/// The outlines of the figures as functions of the points that fix them. Image pixels; y grows downwards.

/// The head of an arrow whose tip is `end`: tip, two barbs, tip. 7 pixels deep and 14 wide, whatever the
/// width of the line; all four points are the tip if the arrow has no length.
QPolygonF arrowHead(const QPointF &start, const QPointF &end);

/// The head as the eraser sees it: one pixel larger on each side.
QPolygonF arrowHitHead(const QPointF &start, const QPointF &end);

/// The offset from the shaft's axis to the border of the thin quad by which the eraser finds the shaft.
///
/// A shaft along an axis takes a diagonal, so that the quad is never without area. The bands of directions
/// that count as such overlap and are not symmetrical; what can be hit depends on every bound of them.
QPointF arrowShaftHalfWidth(const QPointF &start, const QPointF &end);

/// What the eraser can hit of an arrow: the larger head united with the quad around the shaft.
QPolygonF arrowHitArea(const QPointF &start, const QPointF &end);

/// A speech balloon that fills the rectangle: the body takes the upper four fifths, the tail hangs from the
/// second quarter of its width and points to the bottom left. Closed.
QPolygonF speechBalloonPolygon(const QRectF &rect);

/// The part of the line that lies in the rectangle, border included; false if there is none.
bool clipLine(QLineF *line, const QRectF &rect);
