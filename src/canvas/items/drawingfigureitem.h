#pragma once

#include "canvas/items/drawinginterface.h"
#include "canvas/items/drawingitem.h"
#include "canvas/items/omittable.h"

#include <QPainterPath>

/// What is fixed by two points, the press and the release, and can not be changed afterwards.
///
/// A move takes the extent, and with Shift the constrained shape, from the mouse position before it, so the
/// preview is one event behind; the release takes everything from its own point, which makes the result
/// exact. Nothing can be hit before the release.
class DrawingFigureItem : public DrawingItem, public DrawingInterface, public Omittable {
    Q_OBJECT
public:
    QPointF startPoint() const { return m_startPoint; }
    QPointF endPoint() const { return m_endPoint; }
    QRectF itemRect() const { return m_itemRect; }

    QPainterPath shape() const override;
    QRectF paintedRect() const override;
    QRectF extent() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    QRectF drawStart(QPoint pos) override;
    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;
    void drawFinish(bool accept) override;

protected:
    /// What Shift holds the figure to.
    enum class ShiftRule {
        Direction, ///< the nearest of four directions, found anew for each point
        Square     ///< a square; without Shift, too, such a figure has at least one pixel each way
    };

    DrawingFigureItem(ShiftRule rule, const DrawingAttributes &attributes, const QRectF &sceneRect,
                      QObject *parent);

    /// The points and the rectangle are new: brings up to date what depends on them.
    virtual void placed() {}
    /// The release: what the eraser can hit from now on.
    virtual void addHitArea(QPainterPath *path) = 0;
    /// Everything that the outline's points span, without the width of the pen.
    virtual QRectF outlineRect() const { return m_itemRect; }
    /// Draws the figure; pen and clip are set.
    virtual void drawFigure(QPainter *painter) const = 0;

    QPen figurePen(Qt::PenStyle style) const;

    QPointF m_startPoint;
    QPointF m_endPoint;
    QPainterPath m_hitPath;

private:
    void stretch(const QPointF &measured, const QPointF &pos, bool shift);

    QRectF markedRect() const;

    ShiftRule m_rule;
};
