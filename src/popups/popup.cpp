#include "popups/popup.h"

#include "ui/menu.h"
#include "ui/popupshadow.h"

#include <QAbstractButton>
#include <QActionEvent>
#include <QApplication>
#include <QButtonGroup>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOption>
#include <QWidgetAction>

#include <cstdlib>
#include <limits>

namespace {

/// How hard it is to get from one widget to another with an arrow key; the largest integer when the other
/// does not lie that way at all. Sideways that is only what stands in the same row, upwards and downwards
/// the next row counts before the nearest column.
int distanceAlong(int key, const QRect &from, const QRect &to) {
    constexpr int rowWeight = 8;
    constexpr int never = std::numeric_limits<int>::max();
    const QPoint step = to.center() - from.center();
    const bool sameRow = from.top() <= to.bottom() && to.top() <= from.bottom();
    if (key == Qt::Key_Left || key == Qt::Key_Right) {
        const int ahead = key == Qt::Key_Left ? -step.x() : step.x();
        return sameRow && ahead > 0 ? ahead : never;
    }
    const int ahead = key == Qt::Key_Up ? -step.y() : step.y();
    return !sameRow && ahead > 0 ? rowWeight * ahead + std::abs(step.x()) : never;
}

bool isArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

Popup::Popup(QWidget *parent) : QWidget(parent) {
    setWindowFlags(windowFlags() | Qt::Tool | Qt::FramelessWindowHint);
}

Popup::~Popup() = default;

void Popup::emitCloseSignal(int mode) {
    // Closed first: whoever listens may close the menu that this one was opened from.
    closeMenu();
    switch (mode) {
    case Triggered:
        emit triggered();
        break;
    case Canceled:
        emit canceled();
        break;
    case Closed:
        emit closed();
        break;
    default:
        break;
    }
}

void Popup::setCloseMode(int mode) {
    m_closeMode = mode;
}

Popup *Popup::findPopup(QWidget *holder) {
    return holder ? holder->findChild<Popup *>() : nullptr;
}

Menu *Popup::toMenu(QWidget *parent) {
    auto *menu = new Menu(parent);
    m_owner = menu;
    m_action = new QWidgetAction(menu);
    m_action->setDefaultWidget(this);
    menu->addAction(m_action);
    connect(menu, &QMenu::aboutToShow, this, &Popup::onMenuAboutToShow);
    connect(menu, &QMenu::aboutToHide, this, &Popup::onMenuAboutToHide);
    connect(this, &Popup::triggered, menu, [this] { closeMenu(); });
    connect(this, &Popup::canceled, menu, [this] { closeMenu(); });
    connect(this, &Popup::closed, menu, [this] { closeMenu(); });
    return menu;
}

void Popup::onMenuAboutToShow() {
    // Nobody has shown the panel yet at the first time, so its contents count as visible from here on.
    remeasureMenu();
    if (QWidget *first = firstFocus())
        first->setFocus(Qt::PopupFocusReason);
}

void Popup::onMenuAboutToHide() {
    const int mode = m_closeMode;
    m_closeMode = Closed;
    // The signal that closes the menu has told already how it ended.
    if (!m_closingByOwnSignal)
        emitCloseSignal(mode);
}

void Popup::closeMenu() {
    if (!m_owner || !m_owner->isVisible() || m_closingByOwnSignal)
        return;
    const QScopedValueRollback<bool> guard(m_closingByOwnSignal, true);
    m_owner->close();
}

void Popup::remeasureMenu() {
    // A menu measures its entries only when an action changes, never when an embedded widget does.
    QActionEvent changed(QEvent::ActionChanged, m_action);
    QApplication::sendEvent(m_owner, &changed);
}

bool Popup::event(QEvent *event) {
    if (event->type() == QEvent::WinIdChange)
        addPopupShadow(this);
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        if (m_owner && m_owner->isVisible())
            remeasureMenu();
        else if (isWindow() && isVisible())
            adjustSize();
    }
    return handled;
}

bool Popup::eventFilter(QObject *watched, QEvent *event) {
    auto *button = qobject_cast<QAbstractButton *>(watched);
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!button || !isKey)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (!isArrow(key) && !isEnter(key))
        return QWidget::eventFilter(watched, event);
    // The keys are the button's, whatever the window behind a floating panel has them for.
    if (event->type() == QEvent::ShortcutOverride)
        event->accept();
    else if (isEnter(key))
        button->click();
    else // A group of buttons would choose with every arrow key, and the first choice closes the menu.
        moveFocus(button, key);
    return true;
}

void Popup::mousePressEvent(QMouseEvent *event) {
    // The menu behind would close on a click into a gap.
    if (event->button() == Qt::LeftButton)
        event->accept();
    else
        QWidget::mousePressEvent(event);
}

void Popup::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape) {
        // Nothing for the menu behind, which would take letters for mnemonics and Enter for a choice.
        if (m_owner)
            event->accept();
        else
            QWidget::keyPressEvent(event);
        return;
    }
    if (isWindow())
        cancelByKey();
    else
        QWidget::keyPressEvent(event);
}

void Popup::cancelByKey() {
    close();
    emit canceled();
}

void Popup::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    const auto buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->window() == window())
            button->installEventFilter(this);
    }
    // As a page of another panel it has the size that the layout there gives it.
    if (isWindow() || m_owner)
        adjustSize();
}

void Popup::paintEvent(QPaintEvent *) {
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

QWidget *Popup::firstFocus() const {
    const QList<QWidget *> chain = focusChain();
    for (QWidget *widget : chain) {
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        if (button && button->isChecked())
            return widget;
    }
    return chain.isEmpty() ? nullptr : chain.first();
}

QList<QWidget *> Popup::focusChain() const {
    QList<QWidget *> chain;
    for (QWidget *widget = nextInFocusChain(); widget && widget != this;
         widget = widget->nextInFocusChain()) {
        if (!isAncestorOf(widget) || !isUsable(widget) || !(widget->focusPolicy() & Qt::TabFocus) ||
            widget->focusProxy())
            continue;
        QWidget *chosen = chosenInPlaceOf(widget);
        if (!chain.contains(chosen))
            chain.append(chosen);
    }
    return chain;
}

bool Popup::isUsable(const QWidget *widget) const {
    return widget->isVisibleTo(this) && widget->isEnabled();
}

QWidget *Popup::chosenInPlaceOf(QWidget *widget) const {
    const auto *button = qobject_cast<QAbstractButton *>(widget);
    const QButtonGroup *group = button ? button->group() : nullptr;
    QAbstractButton *chosen = group && group->exclusive() ? group->checkedButton() : nullptr;
    return chosen && isUsable(chosen) ? chosen : widget;
}

bool Popup::focusNextPrevChild(bool next) {
    if (!m_owner)
        return QWidget::focusNextPrevChild(next);
    // A menu has its own idea of Tab, so the round through the panel is made here.
    const QList<QWidget *> chain = focusChain();
    if (chain.isEmpty())
        return false;
    int index = chain.indexOf(chosenInPlaceOf(QApplication::focusWidget()));
    if (index < 0)
        index = next ? -1 : 0;
    index = (index + (next ? 1 : -1) + chain.size()) % chain.size();
    chain.at(index)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void Popup::moveFocus(QWidget *from, int key) {
    const auto buttons = findChildren<QAbstractButton *>();
    const QRect start(from->mapTo(this, QPoint()), from->size());
    QAbstractButton *nearest = nullptr;
    int least = std::numeric_limits<int>::max();
    for (QAbstractButton *button : buttons) {
        if (button->window() != window() || !button->isVisible() || !button->isEnabled() ||
            button->focusPolicy() == Qt::NoFocus)
            continue;
        const QRect place(button->mapTo(this, QPoint()), button->size());
        const int distance = distanceAlong(key, start, place);
        if (distance < least) {
            least = distance;
            nearest = button;
        }
    }
    if (nearest)
        nearest->setFocus(Qt::TabFocusReason);
}
