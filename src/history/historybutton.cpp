#include "history/historybutton.h"

#include "services/usagestatistics.h"
#include "ui/uistyler.h"

#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

// Lighter under the pointer and when checked, slightly dimmed when saved.
const QColor highlightOverlay(255, 255, 255, 127);
const QColor savedOverlay(0, 0, 0, 25);

// Designed sizes, at 96 DPI.
constexpr int ButtonSide = 78;
constexpr int IconSide = 80;
constexpr int CloseSide = 20;
constexpr int SelectSide = 18;
constexpr int PinSide = 20; // the pin of 12 with 4 of padding around it
constexpr int MarkSide = 20;
constexpr int SelectMargin = 4;

QString picture(const QString &name) {
    return QStringLiteral(":/res/history/%1.svg").arg(name);
}

QIcon checkableIcon(const QString &name) {
    QIcon icon(picture(name));
    icon.addFile(picture(name + QStringLiteral("_checked")), {}, QIcon::Normal, QIcon::On);
    return icon;
}

} // namespace

HistoryButton::HistoryButton(QWidget *parent)
    : QPushButton(parent), m_closeButton(addControl(QStringLiteral("closeButton_"), CloseSide)),
      m_selectButton(addControl(QStringLiteral("selectButton_"), SelectSide)),
      m_pinButton(addControl(QStringLiteral("pinButton_"), PinSide)),
      m_saveIcon(addMark(QStringLiteral("saveIcon_"))), m_pinnedIcon(addMark(QStringLiteral("pinnedIcon_"))) {
    setCheckable(true);
    setFixedSize(ButtonSide, ButtonSide);
    setIconSize({IconSide, IconSide});
    m_closeButton->setAccessibleName(tr("Delete"));
    m_selectButton->setAccessibleName(tr("Select"));
    m_pinButton->setAccessibleName(tr("Pin"));
    m_closeButton->setIcon(QIcon(picture(QStringLiteral("close"))));
    m_selectButton->setCheckable(true);
    m_selectButton->setIcon(checkableIcon(QStringLiteral("select")));
    m_pinButton->setCheckable(true);
    m_pinButton->setIcon(checkableIcon(QStringLiteral("pin")));

    connect(m_selectButton, &QPushButton::toggled, this, &HistoryButton::onImageSelected);
    connect(m_selectButton, &QPushButton::toggled, this, &HistoryButton::changeSelectChecked);
    connect(m_closeButton, &QPushButton::clicked, this, &HistoryButton::onClickCloseButton);
    connect(m_pinButton, &QPushButton::clicked, this, &HistoryButton::onClickPinButton);
}

QPushButton *HistoryButton::addControl(const QString &name, int side) {
    auto *button = new QPushButton(this);
    button->setObjectName(name);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    button->setFlat(true);
    button->setIconSize({side, side});
    button->setFixedSize(side, side);
    button->hide();
    return button;
}

QLabel *HistoryButton::addMark(const QString &name) {
    auto *mark = new QLabel(this);
    mark->setObjectName(name);
    mark->setFixedSize(MarkSide, MarkSide);
    mark->hide();
    return mark;
}

void HistoryButton::setThumbnail(const QPixmap &thumbnail) {
    m_thumbnail = thumbnail;
    update();
}

void HistoryButton::setPinned(bool pinned) {
    m_pinned = pinned;
    m_pinButton->setChecked(pinned);
    m_pinnedIcon->setVisible(pinned);
    emit clickPinButton(pinned);
}

void HistoryButton::onImageSaved(bool saved) {
    m_saved = saved;
    setOverlay(saved ? savedOverlay : QColor(Qt::transparent));
    m_saveIcon->setVisible(saved);
}

void HistoryButton::onImageSelected(bool selected) {
    m_selected = selected;
    setOverlay(restingOverlay());
    m_selectButton->setChecked(selected);
}

void HistoryButton::onChangeSelectionMode(HistorySelectMode mode) {
    m_selectionMode = mode;
    m_selectButton->setChecked(false);
    m_selectButton->setVisible(mode == HistorySelectModes::Select);
    m_selected = false;
    setOverlay(restingOverlay());
    repaint();
}

void HistoryButton::enterEvent(QEvent *event) {
    QPushButton::enterEvent(event);
    setOverlay(highlightOverlay);
    m_closeButton->show();
    m_pinButton->setVisible(m_pinnable);
    m_pinnedIcon->hide();
}

void HistoryButton::leaveEvent(QEvent *event) {
    QPushButton::leaveEvent(event);
    setOverlay(restingOverlay());
    m_closeButton->hide();
    m_pinButton->hide();
    m_pinnedIcon->setVisible(m_pinned);
}

void HistoryButton::focusInEvent(QFocusEvent *event) {
    QPushButton::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        emit reachedByKey();
}

// What the mouse does on the small buttons: Delete is a key of the window, and Space a click.
void HistoryButton::keyPressEvent(QKeyEvent *event) {
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (plain && event->key() == Qt::Key_P && m_pinnable)
        onClickPinButton();
    else if (plain && event->key() == Qt::Key_S && m_selectionMode == HistorySelectModes::Select)
        m_selectButton->toggle();
    else
        QPushButton::keyPressEvent(event);
}

void HistoryButton::onClickCloseButton() {
    recordUsage("cap_302_03");
    emit clickCloseButton();
}

void HistoryButton::onClickPinButton() {
    const bool pinned = !m_pinned;
    if (pinned)
        recordUsage("cap_303_21");
    setPinned(pinned);
}

void HistoryButton::setOverlay(const QColor &overlay) {
    m_overlay = overlay;
    update();
}

QColor HistoryButton::restingOverlay() const {
    if (m_selected)
        return highlightOverlay;
    return m_saved ? savedOverlay : QColor(Qt::transparent);
}

void HistoryButton::placeControls() {
    const int margin = int(SelectMargin * widgetScale(this));
    const int right = width();
    const int bottom = height();
    m_closeButton->move(right - m_closeButton->width(), 0);
    m_selectButton->move(margin, margin);
    m_pinButton->move(right - m_pinButton->width(), bottom - m_pinButton->height());
    m_pinnedIcon->move(right - m_pinnedIcon->width(), bottom - m_pinnedIcon->height());
    m_saveIcon->move(0, bottom - m_saveIcon->height());
}

void HistoryButton::paintEvent(QPaintEvent *) {
    // Here, and not when the size changes: the style sheet gives the controls their sizes, too, when it is
    // applied for another scale, and a paint follows each of these. Where all is in place nothing moves.
    placeControls();

    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    // Inside the frame, which tells the selected row.
    const QRect contents = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    style()->drawItemPixmap(&painter, contents, Qt::AlignCenter, m_thumbnail);
    painter.fillRect(contents, m_overlay);
    if (option.state & QStyle::State_HasFocus) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}
