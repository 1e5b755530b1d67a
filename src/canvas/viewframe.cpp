#include "canvas/viewframe.h"

namespace {

/// A region of more rectangles than this costs more than painting what lies between them.
constexpr int MostRectangles = 16;

} // namespace

void ViewFrame::adapt(const QSize &size, const QTransform &viewportTransform, const QBrush &around) {
    if (m_image.size() != size)
        m_image = QImage(size, QImage::Format_RGB32);
    else if (m_transform == viewportTransform && m_around == around)
        return;
    m_transform = viewportTransform;
    m_around = around;
    markAllStale();
}

void ViewFrame::clear() {
    *this = ViewFrame();
}

void ViewFrame::markStale(const QRegion &region) {
    m_stale += region & m_image.rect();
    if (m_stale.rectCount() > MostRectangles)
        m_stale = m_stale.boundingRect();
}

void ViewFrame::markAllStale() {
    m_stale = m_image.rect();
}

QRegion ViewFrame::takeStale(const QRegion &exposed) {
    const QRegion taken = m_stale & exposed;
    m_stale -= taken;
    return taken;
}
