#include "canvas/floatingtextpopup.h"

#include "canvas/items/drawingtextitem.h"
#include "popups/textpopup.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QInputMethod>
#include <QScreen>
#include <QScrollBar>
#include <QTextDocument>

namespace {

/// Pixels of the screen between the popup and the text, whatever the scale.
constexpr int Gap = 10;

/// The free part of the screen with that point; `other` says which screen is meant by a point off all of
/// them.
QRect availableAt(const QPoint &point, const QWidget *other) {
    const QScreen *screen = QGuiApplication::screenAt(point);
    return (screen ? screen : other->screen())->availableGeometry();
}

/// Where a window of that size stands over a text, in global coordinates: at its left and just above it,
/// below it where there is no room above, and in any case on the screen.
QPoint placeAt(const QRect &text, const QSize &size, const QRect &available) {
    const QRect below(text.x(), text.y() + text.height() + Gap, size.width(), size.height());
    QPoint place(text.x(), text.y() - Gap - size.height());
    if (place.y() < available.y() && below.bottom() <= available.bottom())
        place = below.topLeft();
    const QPoint last(available.x() + available.width() - size.width(),
                      available.y() + available.height() - size.height());
    return {qMax(available.x(), qMin(place.x(), last.x())), qMax(available.y(), qMin(place.y(), last.y()))};
}

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
    if (!item)
        return;
    item->attachPopup(m_popup.get());
    // Queued, as the item takes the size over itself only then.
    connect(item->document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &FloatingTextPopup::onBoxResized, Qt::QueuedConnection);
}

void FloatingTextPopup::finish() {
    m_item = nullptr;
    m_popup->close();
}

void FloatingTextPopup::place() {
    if (!m_item)
        return;
    m_popup->move(wantedPlace());
    m_popup->raise();
    moveInputMethod();
}

QPoint FloatingTextPopup::wantedPlace() const {
    const QSize box = m_view->transform().mapRect(m_item->boundingRect()).size().toSize();
    const QPoint corner = m_view->viewport()->mapToGlobal(m_view->mapFromScene(m_item->scenePos()));
    return placeAt(QRect(corner, box), m_popup->size(), availableAt(corner, m_view));
}

// Below the box it would come to lie on the lines that are added.
void FloatingTextPopup::onBoxResized() {
    if (m_item && m_popup->isVisible() && m_popup->pos() != wantedPlace())
        place();
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
