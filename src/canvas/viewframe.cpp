#include "canvas/viewframe.h"

#include <QPainter>

#include <utility>

namespace {

/// A region of more rectangles than this costs more than painting what lies between them.
constexpr int MostRectangles = 16;

void add(const QRegion &region, QRegion *sum) {
    *sum += region;
    if (sum->rectCount() > MostRectangles)
        *sum = sum->boundingRect();
}

} // namespace

void ViewFrame::adapt(const QSize &size, const QTransform &viewportTransform, const QBrush &around) {
    if (m_image.size() != size) {
        m_image = QImage(size, QImage::Format_RGB32);
        endUnderlay();
    } else if (m_transform == viewportTransform && m_around == around) {
        return;
    }
    m_transform = viewportTransform;
    m_around = around;
    markAllStale();
}

void ViewFrame::clear() {
    *this = ViewFrame();
}

void ViewFrame::markStale(const QRegion &region) {
    markStaleAbove(region);
    if (hasUnderlay())
        add(region & m_image.rect(), &m_staleUnderlay);
}

void ViewFrame::markStaleAbove(const QRegion &region) {
    add(region & m_image.rect(), &m_stale);
}

void ViewFrame::markAllStale() {
    m_stale = m_image.rect();
    m_staleUnderlay = m_underlay.rect();
}

QRegion ViewFrame::takeStale(const QRegion &exposed) {
    const QRegion taken = m_stale & exposed;
    m_stale -= taken;
    return taken;
}

void ViewFrame::beginUnderlay(const QRegion &unknown) {
    m_underlay = m_image;
    m_staleUnderlay = m_stale;
    add(unknown & m_image.rect(), &m_staleUnderlay);
}

void ViewFrame::endUnderlay() {
    m_underlay = QImage();
    m_staleUnderlay = QRegion();
}

QRegion ViewFrame::takeStaleUnderlay() {
    return std::exchange(m_staleUnderlay, QRegion());
}

void ViewFrame::uncover(const QRect &rect) {
    QPainter painter(&m_image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(rect.topLeft(), m_underlay, rect);
}
