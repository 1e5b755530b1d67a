#pragma once

#include "canvas/items/drawingattributes.h"

#include <QGraphicsItem>
#include <QObject>
#include <QPen>

/// Base of everything that can be drawn over the image, but text.
///
/// Geometry is in scene coordinates, which are image pixels; the item itself stays at the origin. Settings
/// are taken when the item is built and never change. Nothing is painted outside the clip rectangle. An
/// item is owned by its `Editor`, in the scene or out of it.
class DrawingItem : public QObject, public QGraphicsItem {
    Q_OBJECT
    Q_INTERFACES(QGraphicsItem)
public:
    /// `sceneRect` is the part of the image that is visible now.
    DrawingItem(const DrawingAttributes &attributes, const QRectF &sceneRect, QObject *parent);

    QRectF boundingRect() const override;
    /// All that `paint` can touch, in scene coordinates. May reach beyond the bounding rectangle, which the
    /// toolkit takes for the same and which some items keep smaller.
    virtual QRectF paintedRect() const { return boundingRect(); }
    /// All that the item could paint or be hit at if the whole image were visible, and more.
    virtual QRectF extent() const;

    /// Whether the item draws anything into a flattened picture.
    virtual bool isDrawn() const { return true; }

public slots:
    /// Another part of the image is visible. Only stores it: whoever changes the crop repaints the scene.
    void onChangeSceneRect(QRectF sceneRect);

protected:
    /// The pen of the outline or stroke, in the item's colour.
    QPen itemPen(qreal width, Qt::PenStyle style, Qt::PenCapStyle cap) const;
    /// What of a hit area can be hit: the part that is visible.
    QPainterPath clippedHitArea(const QPainterPath &hitPath) const;

    QRectF m_itemRect; ///< what is drawn, normalised
    QColor m_lineColor;
    QColor m_fillColor;
    int m_lineWidth;
    int m_lineStyle;
    QRectF m_sceneRect;
};

/// The cap of every item that does not ask for another one. It is the mask of the cap styles and none of
/// them; the raster engine draws it as a round cap, but takes its general stroker for it.
constexpr Qt::PenCapStyle ItemPenCap = Qt::MPenCapStyle;
