#pragma once

#include <QPoint>
#include <QRectF>

/// How the `Editor` feeds a drag to the item under construction. Points are image pixels.
///
/// Each of the first three gives back the item's bounding rectangle after the call.
class DrawingInterface {
public:
    virtual ~DrawingInterface() = default;

    /// The press, before the item joins the scene.
    virtual QRectF drawStart(QPoint pos) = 0;
    /// A mouse move during the drag.
    virtual QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) = 0;
    /// The release, if the mouse moved.
    virtual QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) = 0;
    /// Closes an item that stays open after the press (text, crop), keeping or discarding it.
    virtual void drawFinish(bool accept) = 0;
};
