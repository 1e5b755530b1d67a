#include "canvas/items/drawingtextitem.h"

#include "canvas/flagguard.h"
#include "popups/textpopup.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace {

constexpr double MinimumWidth = 150.0;
/// Between the box and what is written in it.
constexpr double DocumentMargin = 6.0;
/// The zone along the edge of the box by which the mouse moves it.
constexpr int Border = 6;
/// What stays in sight around a text that is being composed.
constexpr int ComposingMargin = 50;
const QColor Plate(255, 255, 255, 127);

constexpr QGraphicsItem::GraphicsItemFlag OpenFlags[] = {
    QGraphicsItem::ItemIsMovable, QGraphicsItem::ItemIsSelectable, QGraphicsItem::ItemSendsGeometryChanges};

} // namespace

DrawingTextItem::DrawingTextItem(const QRectF &sceneRect, QObject *parent)
    : m_sceneRect(sceneRect), m_font(QStringLiteral("Malgun Gothic"), -1, -1, false) {
    setParent(parent);
    for (const GraphicsItemFlag flag : OpenFlags)
        setFlag(flag);
    setTextInteractionFlags(Qt::TextEditorInteraction);
    // What is pasted takes the settings of the text, as what is typed does. Only the toolkit's control behind
    // the item can be told, and only by this property.
    for (QObject *control : children())
        control->setProperty("acceptRichText", false);
    const auto *preferences = TindraPreferences::instance();
    const auto stored = [preferences](TindraPreferences::Id id) {
        return preferences->GetInt(id, TindraPreferences::defaultInt(id));
    };
    applyFont(stored(TindraPreferences::TextSize), preferences->color(TindraPreferences::TextColor),
              stored(TindraPreferences::TextStyle));
}

QRectF DrawingTextItem::drawStart(QPoint pos) {
    setPos(pos);
    setSelected(true);
    setFocus(Qt::OtherFocusReason);
    document()->setDocumentMargin(DocumentMargin);
    // Makes the item measure its document anew.
    setDocument(document());
    setTextWidth(MinimumWidth);
    moveBy(0, -boundingRect().height() / 2);
    return boundingRect();
}

QRectF DrawingTextItem::drawMove(QPoint, QPoint pos, bool) {
    if (const QGraphicsView *view = firstView()) {
        const QPointF local = mapFromScene(pos);
        // On the viewport, since the item's own cursor would end with the box.
        if (!contains(local))
            view->viewport()->setCursor(Qt::ArrowCursor);
        else
            view->viewport()->setCursor(isInside(local) ? Qt::IBeamCursor : Qt::SizeAllCursor);
    }
    return boundingRect();
}

QRectF DrawingTextItem::drawEnd(QPoint, QPoint, bool) {
    return boundingRect();
}

void DrawingTextItem::drawFinish(bool accept) {
    close(accept, true);
}

void DrawingTextItem::attachPopup(TextPopup *popup) {
    m_popup = popup;
    m_popupConnections.append(connect(popup, &TextPopup::fontChanged, this, &DrawingTextItem::onChangeFont));
}

void DrawingTextItem::onChangeFont(int fontSize, QColor color, int format) {
    applyFont(fontSize, color, format);
    applyWidthRule();
    // Typing goes on after a click into the popup, but for a size that is being typed there.
    QGraphicsView *view = firstView();
    if (view && (!m_popup || QApplication::activeWindow() != m_popup))
        view->activateWindow();
}

void DrawingTextItem::applyFont(int fontSize, const QColor &color, int format) {
    m_font.setWeight(format & TextPopup::Bold ? QFont::Bold : QFont::Normal);
    m_font.setStyle(format & TextPopup::Italic ? QFont::StyleItalic : QFont::StyleNormal);
    m_font.setUnderline(format & TextPopup::Underline);
    if (fontSize > 0)
        m_font.setPointSize(fontSize);
    setFont(m_font);
    setDefaultTextColor(color);
}

void DrawingTextItem::onChangeSceneRect(QRectF sceneRect) {
    m_sceneRect = sceneRect;
}

QGraphicsView *DrawingTextItem::firstView() const {
    return scene() && !scene()->views().isEmpty() ? scene()->views().first() : nullptr;
}

bool DrawingTextItem::isInside(const QPointF &pos) const {
    return boundingRect().toRect().adjusted(Border, Border, -Border, -Border).contains(pos.toPoint());
}

// A line one device pixel wide, whatever the scale.
QRect DrawingTextItem::lowerLine(const QGraphicsView &view) const {
    const QRectF box = sceneBoundingRect();
    const QRectF line(box.bottomLeft(), QSizeF(box.width(), 0));
    return view.viewportTransform().mapRect(line).toAlignedRect().adjusted(-1, -1, 1, 1);
}

// The box is as wide as its longest line, which nothing breaks, but never narrower than the minimum.
void DrawingTextItem::applyWidthRule() {
    setTextWidth(-1);
    if (boundingRect().width() < MinimumWidth)
        setTextWidth(MinimumWidth);
}

// Raising is all that brings it to the front here: a window that takes no focus cannot be activated.
void DrawingTextItem::showPopup() {
    if (!m_popup)
        return;
    m_popup->show();
    m_popup->raise();
}

bool DrawingTextItem::isForPopup(const QKeyEvent *event) const {
    return m_popup && event->key() == TextPopup::EnteringKey && event->modifiers() == Qt::NoModifier;
}

bool DrawingTextItem::sceneEvent(QEvent *event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        if (isForPopup(static_cast<QKeyEvent *>(event))) {
            showPopup();
            m_popup->takeKeyboard();
            return true;
        }
        const bool handled = QGraphicsTextItem::sceneEvent(event);
        showPopup();
        applyWidthRule();
        return handled;
    }
    case QEvent::InputMethod: {
        const bool handled = QGraphicsTextItem::sceneEvent(event);
        showPopup();
        applyWidthRule();
        ensureVisible(QRectF(), ComposingMargin, ComposingMargin);
        return handled;
    }
    case QEvent::GraphicsSceneDrop: {
        const bool handled = QGraphicsTextItem::sceneEvent(event);
        applyWidthRule();
        return handled;
    }
    case QEvent::FocusOut:
        applyWidthRule();
        return QGraphicsTextItem::sceneEvent(event);
    default:
        return QGraphicsTextItem::sceneEvent(event);
    }
}

void DrawingTextItem::mousePressEvent(QGraphicsSceneMouseEvent *event) {
    QGraphicsTextItem::mousePressEvent(event);
    if (!m_popup)
        return;
    if (isInside(event->pos()))
        showPopup();
    else
        m_popup->hide(); // out of the way of the drag that begins
}

void DrawingTextItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) {
    // Soon after the click that opened the box, a press on its border counts as the second of two.
    if (isOpen() && !isInside(event->pos()))
        mousePressEvent(event);
    else
        QGraphicsTextItem::mouseDoubleClickEvent(event);
}

void DrawingTextItem::focusOutEvent(QFocusEvent *event) {
    const QWidget *active = QApplication::activeWindow();
    // Whoever goes to another program or into the popup will be back.
    if (!active || active == m_popup)
        return;
    QGraphicsTextItem::focusOutEvent(event);
}

QVariant DrawingTextItem::itemChange(GraphicsItemChange change, const QVariant &value) {
    switch (change) {
    case ItemSceneChange:
        if (!value.value<QGraphicsScene *>())
            break;
        if (m_popup) {
            m_popup->loadSettings();
            showPopup();
        }
        emit moveTextItem(this);
        break;
    case ItemPositionHasChanged:
        if (scene())
            emit moveTextItem(this);
        break;
    case ItemSelectedHasChanged:
        if (!value.toBool() && scene())
            close(true, false);
        break;
    default:
        break;
    }
    return QGraphicsTextItem::itemChange(change, value);
}

void DrawingTextItem::close(bool accept, bool abort) {
    static bool closing = false;
    // The steps below deselect the item and take its focus, which would close it again.
    if (closing || !isOpen())
        return;
    const FlagGuard guard(closing);
    if (accept)
        takeComposedText();
    if (m_popup)
        m_popup->hide();
    detachPopup();
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
    // From here on the crop cuts the bounding rectangle.
    prepareGeometryChange();
    setTextInteractionFlags(Qt::NoTextInteraction);
    for (const GraphicsItemFlag flag : OpenFlags)
        setFlag(flag, false);
    setAcceptDrops(false);
    emit finishEdit(accept && !boundingRect().isEmpty() && !document()->isEmpty(), abort);
}

// A syllable that is still being composed is on the screen already, but not in the document: closed like
// that, the text would show it without having it.
void DrawingTextItem::takeComposedText() {
    if (hasFocus())
        QGuiApplication::inputMethod()->commit();
    const QTextBlock block = textCursor().block();
    const QString composed = block.isValid() ? block.layout()->preeditAreaText() : QString();
    if (composed.isEmpty())
        return;
    QInputMethodEvent commit;
    commit.setCommitString(composed);
    QGraphicsTextItem::inputMethodEvent(&commit);
    applyWidthRule();
}

QRectF DrawingTextItem::boundingRect() const {
    const QRectF whole = QGraphicsTextItem::boundingRect();
    if (isOpen())
        return whole;
    const QRectF visible = mapRectToScene(whole) & m_sceneRect;
    return visible.isEmpty() ? QRectF() : mapRectFromScene(visible);
}

QPainterPath DrawingTextItem::shape() const {
    QPainterPath path;
    path.addRect(boundingRect());
    return path;
}

void DrawingTextItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) {
    // The base class would draw a frame of its own around a selected item.
    QStyleOptionGraphicsItem plain(*option);
    plain.state = QStyle::State_None;
    const QRectF box = boundingRect();
    if (box.isEmpty() || isOmitted())
        return;
    const bool selected = option->state & QStyle::State_Selected;
    painter->save();
    if (selected) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(Plate);
        painter->drawRects(&box, 1);
    }
    QGraphicsTextItem::paint(painter, &plain, widget);
    if (selected) {
        painter->setPen(QPen(option->palette.windowText(), 0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter->setBrush(Qt::transparent);
        const QRectF frame = box.adjusted(0, 0, -1.0, 0);
        painter->drawRects(&frame, 1);
        // The frame's lower line lies outside the box, which is all that a view is told to paint anew.
        const QGraphicsView *view = widget ? firstView() : nullptr;
        if (view)
            view->viewport()->update(lowerLine(*view));
    }
    painter->restore();
}
