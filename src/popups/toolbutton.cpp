#include "popups/toolbutton.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QVBoxLayout>

namespace {

bool pressesButton(const QEvent *event) {
    const auto *keyEvent = static_cast<const QKeyEvent *>(event);
    return !keyEvent->isAutoRepeat() &&
           (keyEvent->key() == Qt::Key_Space || keyEvent->key() == Qt::Key_Select);
}

} // namespace

ToolButton::ToolButton(QWidget *parent)
    : QPushButton(parent), m_menuButton(new QPushButton(this)), m_image(new QLabel(this)) {
    setCursor(Qt::PointingHandCursor);
    // A click must not take the keyboard away from a text that is being written.
    setFocusPolicy(Qt::TabFocus);
    m_menuButton->setFocusPolicy(Qt::TabFocus);
    m_image->setObjectName(QStringLiteral("image_"));
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_menuButton->setObjectName(QStringLiteral("menuBtn_"));
    m_menuButton->setCheckable(true);
    m_menuButton->hide();
    m_menuButton->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_image, 0, Qt::AlignHCenter);
    layout->addStretch();
    layout->addWidget(m_menuButton);

    connect(this, &QPushButton::toggled, m_menuButton, &QPushButton::setChecked);
    // The half's own clicks must not part it from the button.
    connect(m_menuButton, &QPushButton::toggled, this, [this] { m_menuButton->setChecked(isChecked()); });
}

void ToolButton::setMenu(QMenu *menu) {
    m_menuButton->setMenu(m_showMenuButton ? menu : nullptr);
    QPushButton::setMenu(m_showMenuButton ? nullptr : menu);
    if (menu)
        connect(menu, &QMenu::aboutToHide, this, &ToolButton::unlightWhenLeft, Qt::UniqueConnection);
}

// An open menu takes the mouse, and nobody below it is told when the mouse leaves meanwhile.
void ToolButton::unlightWhenLeft() {
    const QPoint mouse = QCursor::pos();
    for (QWidget *half : {static_cast<QWidget *>(m_menuButton), static_cast<QWidget *>(this)}) {
        if (!half->underMouse() || half->rect().contains(half->mapFromGlobal(mouse)))
            continue;
        half->setAttribute(Qt::WA_UnderMouse, false);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(half, &leave);
        half->update();
    }
}

QMenu *ToolButton::menu() const {
    QMenu *own = QPushButton::menu();
    return own ? own : m_menuButton->menu();
}

void ToolButton::setShowMenuButton(bool show) {
    m_showMenuButton = show;
    m_menuButton->setVisible(show);
    setMenu(menu());
}

void ToolButton::setMenuAccessibleName(const QString &name) {
    m_menuButton->setAccessibleName(name);
}

bool ToolButton::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_menuButton && m_menuButton->isEnabled()) {
        if (event->type() == QEvent::MouseButtonPress ||
            (event->type() == QEvent::KeyPress && pressesButton(event)))
            emit beforePress();
    }
    return QPushButton::eventFilter(watched, event);
}

void ToolButton::enterEvent(QEvent *event) {
    setHover(1);
    QPushButton::enterEvent(event);
}

void ToolButton::leaveEvent(QEvent *event) {
    setHover(0);
    QPushButton::leaveEvent(event);
}

void ToolButton::setHover(int hover) {
    m_menuButton->setProperty("hover", hover);
    m_menuButton->style()->unpolish(m_menuButton);
    m_menuButton->style()->polish(m_menuButton);
}

void ToolButton::mousePressEvent(QMouseEvent *event) {
    emit beforePress();
    QPushButton::mousePressEvent(event);
}

// Tab alone comes to one button of an exclusive group only, and the arrow keys of the base class would check
// the next without choosing its tool.
void ToolButton::focusNeighbour(bool next) {
    ToolButton *nearest = nullptr;
    const auto buttons = parentWidget()->findChildren<ToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    for (ToolButton *button : buttons) {
        const int distance = next ? button->x() - x() : x() - button->x();
        if (!button->isVisible() || !button->isEnabled() || distance <= 0)
            continue;
        if (!nearest || distance < qAbs(nearest->x() - x()))
            nearest = button;
    }
    if (nearest)
        nearest->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

void ToolButton::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        if (parentWidget())
            focusNeighbour(event->key() == Qt::Key_Right);
        return;
    }
    if (pressesButton(event))
        emit beforePress();
    QPushButton::keyPressEvent(event);
}

void ToolButton::paintEvent(QPaintEvent *) {
    QStyleOptionButton option;
    initStyleOption(&option);
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    QStyleOptionButton label(option);
    // The style would move the text aside for the menu's arrow, which stands below it here.
    label.features &= ~QStyleOptionButton::HasMenu;
    label.rect = style()->subElementRect(QStyle::SE_PushButtonContents, &label, this);
    painter.drawControl(QStyle::CE_PushButtonLabel, label);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}
