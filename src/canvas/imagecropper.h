#pragma once

#include <QCursor>
#include <QPointF>
#include <QWidget>

/// The crop frame: a widget as large as the image that dims all but the frame, with handles to move and
/// resize it.
///
/// Stands in the scene, so its pixels are image pixels and the view's zoom is not its business. GUI thread.
class ImageCropper : public QWidget {
    Q_OBJECT
public:
    /// What of the frame is under the mouse.
    enum CursorPosition {
        Undefined = 0, ///< outside
        Middle = 1,
        Left = 2,
        Right = 3,
        Top = 4,
        Bottom = 5,
        TopLeft = 6,
        TopRight = 7,
        BottomLeft = 8,
        BottomRight = 9
    };

    explicit ImageCropper(QWidget *parent = nullptr);

    /// The limits of the frame.
    void setImageRect(const QRect &imageRect) { m_imageRect = imageRect; }
    QRect cropRect() const { return m_cropRect; }
    void setCropRect(const QRect &cropRect);
    /// A typed size: the top left stays, what does not fit into the image is cut off.
    void setCropSize(QSize size);

    /// Paints what the widget shows, with its top left at the painter's origin. Only what lies in `exposed`
    /// comes out right, and not within two pixels of the device from its border; the painter is to be clipped
    /// to it.
    void paintFrame(QPainter *painter, const QRect &exposed) const;
    /// Where `paintFrame` gives another picture after the frame has gone from one place to another: what has
    /// become dim or bright, and the lines and marks at both places.
    static QRegion changedRegion(const QRect &before, const QRect &after);

    static CursorPosition regionAt(const QPoint &point, const QRect &frame);
    static QCursor cursorOf(CursorPosition region, bool moving);
    /// The frame with the edges of `region` moved by `delta`; null if that is smaller than can be dragged.
    static QRect resized(const QRect &frame, CursorPosition region, const QPoint &delta);

signals:
    /// The frame stands elsewhere, with the same size.
    void move();
    void sizeChanged(QSize size);
    void setProxyCursor(QCursor cursor);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void moveFrame(const QPoint &delta);
    void resizeFrame(const QPoint &delta);
    void refreshCursor(const QPoint &pos);
    void endDrag();

    QPointF m_pressPos;
    CursorPosition m_pressRegion = Undefined;
    QRect m_pressRect;
    bool m_moving = false;
    bool m_resizing = false;
    QRect m_imageRect;
    QRect m_cropRect{0, 0, 170, 170};
};
