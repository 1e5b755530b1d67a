#include "canvas/floatingcroppopup.h"

#include "canvas/cropplacement.h"
#include "canvas/items/drawingcropitem.h"
#include "popups/croppopup.h"

#include <QGraphicsView>
#include <QScrollBar>

FloatingCropPopup::FloatingCropPopup(QGraphicsView *view)
    : m_view(view), m_popup(std::make_unique<CropPopup>(view)) {
    m_popup->hide();
}

FloatingCropPopup::~FloatingCropPopup() {
    finish();
    m_popup->close();
}

void FloatingCropPopup::open(DrawingCropItem *item) {
    m_item = item;
    if (!item)
        return;
    item->attachPopup(m_popup.get());
    // Before it is shown, so that it does not jump.
    place();
}

void FloatingCropPopup::finish() {
    if (m_item && m_item->isOpen()) {
        m_item->detachPopup();
        m_popup->hide();
    }
    m_item = nullptr;
}

void FloatingCropPopup::place() {
    if (!m_item || !m_item->isOpen())
        return;
    const QPoint inViewport = m_view->mapFromScene(m_item->frame().bottomRight());
    const QPoint corner = m_view->viewport()->mapToGlobal(inViewport);
    const QScrollBar *vertical = m_view->verticalScrollBar();
    const QScrollBar *horizontal = m_view->horizontalScrollBar();
    const QSize bars(vertical->isVisible() ? vertical->width() : 0,
                     horizontal->isVisible() ? horizontal->height() : 0);
    const QRect view(m_view->mapToGlobal(QPoint()), m_view->size());
    m_popup->move(cropPopupPlace(corner, m_popup->size(), view, bars));
    m_popup->raise();
}

void FloatingCropPopup::setShown(bool shown) {
    if (!m_item)
        return;
    m_popup->setVisible(shown);
    if (shown)
        place();
}
