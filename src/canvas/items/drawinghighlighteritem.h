#pragma once

#include "canvas/items/drawingfreehanditem.h"

/// A stroke of the highlighter: a flat, upright nib of one-pixel lines that only ever darkens, so that text
/// under it stays readable and overlapping lines do not build up.
///
/// The nib is 2 * (width / 2) + 1 pixels high: an even width comes out one pixel thicker.
class DrawingHighlighterItem : public DrawingFreehandItem {
    Q_OBJECT
public:
    DrawingHighlighterItem(const QRectF &sceneRect, QObject *parent);

    void paintSegments(QPainter *painter, int first) const override;

protected:
    void addSegment(const QPointF &from, const QPointF &to) override;
};
