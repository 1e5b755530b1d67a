#include "canvas/floatingtextpopup.h"

#include "canvas/items/drawingtextitem.h"
#include "popups/textpopup.h"

#include <QEvent>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QInputMethod>
#include <QScrollBar>

namespace {

/// Pixels of the screen between the popup and the text, whatever the scale.
constexpr int Gap = 10;

} // namespace

FloatingTextPopup::FloatingTextPopup(QGraphicsView *view)
    : m_view(view), m_popup(std::make_unique<TextPopup>(view)) {
    m_popup->hide();
    m_popup->installEventFilter(this);
    for (const QScrollBar *bar : {view->horizontalScrollBar(), view->verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &FloatingTextPopup::onScrolled);
}

FloatingTextPopup::~FloatingTextPopup() {
    if (m_item)
        m_item->detachPopup();
    m_popup->close();
}

void FloatingTextPopup::open(DrawingTextItem *item) {
    m_popup->loadSettings();
    m_item = item;
    if (item)
        item->attachPopup(m_popup.get());
}

void FloatingTextPopup::finish() {
    m_item = nullptr;
    m_popup->close();
}

void FloatingTextPopup::place() {
    if (!m_item)
        return;
    const QPoint above = m_view->viewport()->mapToGlobal(m_view->mapFromScene(m_item->scenePos()));
    m_popup->move(above.x(), above.y() - Gap - m_popup->height());
    m_popup->raise();
    moveInputMethod();
}

void FloatingTextPopup::onScrolled() {
    hide();
    moveInputMethod();
}

// The window of the input method stands at the cursor, which has moved though nobody wrote.
void FloatingTextPopup::moveInputMethod() const {
    if (m_item && m_item->hasFocus())
        QGuiApplication::inputMethod()->update(Qt::ImCursorRectangle);
}

void FloatingTextPopup::hide() {
    m_popup->hide();
}

void FloatingTextPopup::setShown(bool shown) {
    if (!m_item)
        return;
    m_popup->setVisible(shown);
    if (shown)
        place();
}

bool FloatingTextPopup::eventFilter(QObject *watched, QEvent *event) {
    // Before anybody sees it: it may have been hidden while its text moved, and have its size only now.
    if (watched == m_popup.get() && event->type() == QEvent::Show) {
        m_popup->adjustSize();
        place();
    }
    return QObject::eventFilter(watched, event);
}
