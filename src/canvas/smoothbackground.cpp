#include "canvas/smoothbackground.h"

#include <QPainter>

void SmoothBackground::paint(QPainter *painter, const QPixmap &image, const QRect &rect, const QRectF &target,
                             double zoom) const {
    if (fits(rect, zoom)) {
        painter->drawPixmap(target, m_pixmap, QRectF(m_pixmap.rect()));
        return;
    }
    // Enlarged pixels stay sharp squares.
    if (zoom < 1.0)
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(target, image, QRectF(rect));
}

bool SmoothBackground::refresh(const QPixmap &image, const QRect &rect, double zoom) {
    const bool had = !m_pixmap.isNull();
    if (zoom >= 1.0) {
        const bool wasShown = fits(rect, zoom);
        clear();
        return wasShown;
    }
    if (had && image.cacheKey() == m_key && fits(rect, zoom))
        return false;
    const QSize size(static_cast<int>(rect.width() * zoom), static_cast<int>(rect.height() * zoom));
    // A copy of all would be a third of the work.
    const QPixmap part = rect == image.rect() ? image : image.copy(rect);
    m_pixmap = part.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    m_key = image.cacheKey();
    m_rect = rect;
    m_zoom = zoom;
    return had || !m_pixmap.isNull();
}

void SmoothBackground::clear() {
    *this = SmoothBackground();
}

bool SmoothBackground::fits(const QRect &rect, double zoom) const {
    return !m_pixmap.isNull() && rect == m_rect && zoom == m_zoom;
}
