#include "canvas/canvasviewport.h"

CanvasViewport::CanvasViewport(QWidget *parent) : QWidget(parent) {
    // Each paint covers the whole exposed region, so nothing need be erased before.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QPaintDevice *CanvasViewport::redirected(QPoint *offset) const {
    if (!m_target)
        return QWidget::redirected(offset);
    if (offset)
        *offset = QPoint();
    return m_target;
}

// A widget that is rendered by someone's painter shares that one, which would lead past the target.
QPainter *CanvasViewport::sharedPainter() const {
    return m_target ? nullptr : QWidget::sharedPainter();
}
