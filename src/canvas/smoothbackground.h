#pragma once

#include <QPixmap>
#include <QRect>

class QPainter;

/// The captured image as the view paints it, with a smoothly scaled copy for scales below 100 %.
///
/// Scaling well is too slow for every paint. So a paint without a fitting copy scales on the fly, and
/// `refresh`, called once the view has been quiet for a while, makes the copy that later paints show.
class SmoothBackground {
public:
    /// Paints the `rect` part of the image into `target`, in device pixels of an untransformed painter.
    void paint(QPainter *painter, const QPixmap &image, const QRect &rect, const QRectF &target,
               double zoom) const;
    /// Brings the copy up to date; true if another picture is to be painted now.
    bool refresh(const QPixmap &image, const QRect &rect, double zoom);
    void clear();
    /// Whether the copy is the one for that part of the image and scale.
    bool fits(const QRect &rect, double zoom) const;

private:
    qint64 m_key = 0; ///< `QPixmap::cacheKey` of the image that was copied
    QRect m_rect;
    double m_zoom = 0;
    QPixmap m_pixmap;
};
