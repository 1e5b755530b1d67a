#pragma once

#include "canvas/items/drawinginterface.h"
#include "canvas/items/drawingitem.h"
#include "canvas/items/segmentindex.h"
#include "canvas/shiftgeometry.h"

#include <QLineF>
#include <QVector>

/// A stroke as the mouse drew it: a list of straight segments, never smoothed or thinned.
///
/// Segments are drawn one by one, each on top of those before, so a picture that shows the first n of them
/// is brought up to date by painting the rest over it; `paint` and `paintSegments` give the same pixels.
/// With Shift held, a run of segments starts at one anchor and keeps the direction of its first step.
class DrawingFreehandItem : public DrawingItem, public DrawingInterface {
    Q_OBJECT
public:
    int segmentCount() const { return m_lines.size(); }
    const QVector<QLineF> &segments() const { return m_lines; }
    /// Paints the segments from `first` on. The painter must be in scene coordinates.
    virtual void paintSegments(QPainter *painter, int first) const = 0;
    /// What these segments can touch, in scene coordinates.
    QRectF segmentsRect(int first) const;

    /// One rectangle a segment, built anew on each call; unlike figures, strokes can also be hit outside
    /// the visible part of the image.
    QPainterPath shape() const override;
    // As the base class answers by all of that shape, but by the segments that lie near.
    bool contains(const QPointF &point) const override;
    bool collidesWithPath(const QPainterPath &path, Qt::ItemSelectionMode mode) const override;
    /// Whether the hit area meets that area, inside or outside the visible part.
    bool isHit(const QRectF &area) const;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    QRectF drawStart(QPoint pos) override;
    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;
    void drawFinish(bool accept) override;

protected:
    DrawingFreehandItem(TindraPreferences::Id color, const QRectF &sceneRect, QObject *parent);

    /// Adds what the tool's nib leaves between two points.
    virtual void addSegment(const QPointF &from, const QPointF &to) = 0;

    void appendLine(const QLineF &line);
    /// Draws the lines from `first` on, with pen, brush and clip set.
    void drawSegments(QPainter *painter, int first) const;

private:
    void applyShift(QPointF &from, QPointF &to, bool shift);
    /// The index of all hit rectangles there are by now.
    const SegmentIndex &index() const;
    /// As much of the shape as can meet the area.
    QPainterPath shapeNear(const QRectF &area) const;

    QVector<QLineF> m_lines;
    mutable SegmentIndex m_index; ///< made when somebody first asks: most strokes are never asked
    mutable int m_indexedSegments = 0;
    QPointF m_shiftAnchor{-1, -1}; ///< start of the straight run; (-1, -1) without one
    QPointF m_shiftEnd{-1, -1};    ///< end of the run so far
    ShiftDirection m_shiftDirection = ShiftDirection::None;
};
