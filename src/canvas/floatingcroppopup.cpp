#include "canvas/floatingcroppopup.h"

#include "canvas/cropplacement.h"
#include "canvas/items/drawingcropitem.h"
#include "popups/croppopup.h"

#include <QAction>
#include <QGraphicsView>
#include <QScrollBar>

FloatingCropPopup::FloatingCropPopup(QGraphicsView *view)
    : m_view(view), m_popup(std::make_unique<CropPopup>(view)), m_enter(new QAction(view)) {
    m_popup->hide();
    m_enter->setShortcut(Popup::EnteringKey);
    m_enter->setEnabled(false);
    m_view->addAction(m_enter);
    QObject::connect(m_enter, &QAction::triggered, m_popup.get(), [this] { moveKeyboard(); });
}

FloatingCropPopup::~FloatingCropPopup() {
    finish();
    m_popup->close();
}

void FloatingCropPopup::open(DrawingCropItem *item) {
    m_item = item;
    // An open text has the key for itself.
    m_enter->setEnabled(item != nullptr);
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
    m_enter->setEnabled(false);
}

// The keys of the window behind act in a tool window as well, so this is the way back too.
void FloatingCropPopup::moveKeyboard() {
    if (m_popup->isActiveWindow())
        m_view->window()->activateWindow();
    else if (m_popup->isVisible())
        m_popup->takeKeyboard();
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
