#include "history/historybuttonwidget.h"

#include "canvas/editor.h"
#include "history/historybutton.h"
#include "history/historylistwidgetitem.h"
#include "history/thumbnail.h"
#include "ui/debouncefunc.h"
#include "ui/menu.h"
#include "ui/throttlefunc.h"
#include "ui/uistyler.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int ThumbnailInterval = 33; // milliseconds
// From a 4K screen on, rendering the scene during a stroke would stall the pen.
constexpr qint64 SlowArea = 3840LL * 2160; // image pixels

} // namespace

HistoryButtonWidget::HistoryButtonWidget(HistoryListWidgetItem *item, QWidget *parent)
    : QWidget(parent),
      m_throttle(new ThrottleFunc([this] { updateThumbnail(false); }, ThumbnailInterval, true, this)),
      m_debounce(new DebounceFunc([this] { updateThumbnail(false); }, ThumbnailInterval, this)), m_item(item),
      m_button(new HistoryButton(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    m_button->setObjectName(QStringLiteral("button_"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addWidget(m_button);
    layout->addStretch();

    connectButton();
    buildMenu();
    UIStyler::setScaleCallback(this, [this](const double &) {
        if (!m_thumbnailSource.isNull())
            updateThumbnail(true);
    });
    QMetaObject::invokeMethod(this, &HistoryButtonWidget::onUpdateThumbnail, Qt::QueuedConnection);
}

void HistoryButtonWidget::connectButton() {
    connect(m_button, &HistoryButton::clicked, this, &HistoryButtonWidget::onClicked);
    connect(m_button, &HistoryButton::clickCloseButton, this, &HistoryButtonWidget::onContextMenuDelete);
    connect(m_button, &HistoryButton::clickPinButton, this, &HistoryButtonWidget::onPinHistory);
    connect(m_button, &HistoryButton::reachedByKey, this, [this] {
        if (m_item)
            m_item->listWidget()->scrollToItem(m_item);
    });
    connect(m_button, &HistoryButton::changeSelectChecked, this, &HistoryButtonWidget::changeSelectChecked);
    connect(this, &HistoryButtonWidget::imageSaved, m_button, &HistoryButton::onImageSaved);
    connect(this, &HistoryButtonWidget::changeSelectionMode, this,
            &HistoryButtonWidget::onChangeSelectionMode);
    connect(this, &HistoryButtonWidget::changeSelectionMode, m_button, &HistoryButton::onChangeSelectionMode);
}

void HistoryButtonWidget::buildMenu() {
    using Row = HistoryButtonWidget;
    m_menu = new Menu(this);
    // The keys are the window's; here they are only shown.
    const auto showKey = [](QAction *action, const QKeySequence &key) {
        action->setShortcut(key);
        action->setShortcutVisibleInContextMenu(true);
    };
    showKey(addEntry(tr("Save"), &Row::onContextMenuSave), QKeySequence(Qt::CTRL | Qt::Key_S));
    showKey(addEntry(tr("Delete"), &Row::onContextMenuDelete), QKeySequence(Qt::Key_Delete));
    m_menu->addSeparator();
    m_saveAll = addEntry(QString(), &Row::onContextMenuSaveImages);
    m_deleteAll = addEntry(QString(), &Row::onContextMenuDeleteImages);
    m_menu->addSeparator();
    m_openFolder = addEntry(tr("OpenSavedFolder(&O)"), &Row::onContextMenuOpenSavedFolder);
    m_openImage = addEntry(tr("OpenSavedImage(&V)"), &Row::onContextMenuOpenSavedImage);
    m_menu->addSeparator();
    m_print = addEntry(QString(), &Row::onContextMenuPrintImages);
    onChangeSelectionMode(m_selectionMode);
}

QAction *HistoryButtonWidget::addEntry(const QString &text, void (HistoryButtonWidget::*slot)()) {
    QAction *action = m_menu->addAction(text);
    // Queued: a dialog lets captures in, one of which may drop this row, and the menu with it, while the
    // menu still stands in its click.
    connect(action, &QAction::triggered, this, slot, Qt::QueuedConnection);
    return action;
}

void HistoryButtonWidget::onChangeSelectionMode(HistorySelectMode mode) {
    m_selectionMode = mode;
    const bool selecting = mode == HistorySelectModes::Select;
    m_saveAll->setText(selecting ? tr("Save selected images") : tr("Save all images"));
    m_deleteAll->setText(selecting ? tr("Delete seleted images") : tr("Delete all images"));
    m_print->setText(selecting ? tr("Print selected images") : tr("Print image"));
}

void HistoryButtonWidget::enableMenu() {
    const bool saved = m_item->editor()->isSaved();
    m_openFolder->setEnabled(saved);
    m_openImage->setEnabled(saved);
    bool enabled = true;
    if (m_selectionMode == HistorySelectModes::Select) {
        enabled = false;
        emit isSelectedItem(enabled);
    }
    m_saveAll->setEnabled(enabled);
    m_deleteAll->setEnabled(enabled);
    m_print->setEnabled(enabled);
}

// The style sheet says late, and again at each change of scale, how large the button is.
bool HistoryButtonWidget::event(QEvent *event) {
    if (event->type() == QEvent::LayoutRequest && m_item)
        m_item->setSizeHint(sizeHint());
    return QWidget::event(event);
}

void HistoryButtonWidget::contextMenuEvent(QContextMenuEvent *event) {
    if (!m_item)
        return;
    enableMenu();
    m_menu->popup(event->globalPos());
}

void HistoryButtonWidget::setChecked(bool checked) {
    m_button->setChecked(checked);
}

bool HistoryButtonWidget::isPinned() const {
    return m_button->isPinned();
}

bool HistoryButtonWidget::isChecked() const {
    return m_button->isImageSelected();
}

void HistoryButtonWidget::setPinned(bool pinned) {
    m_button->setPinned(pinned);
}

void HistoryButtonWidget::updateThumbnail(bool useCache) {
    if (!m_item)
        return;
    Editor *editor = m_item->editor();
    if (!useCache || m_thumbnailSource.isNull()) {
        const QPixmap source = Thumbnail::intermediate(editor->flatten(true, false), m_button->iconSize());
        if (source.isNull())
            return;
        m_thumbnailSource = source;
    }
    const QSize size = editor->visibleRect().size();
    m_button->setAccessibleName(tr("Capture, %0 by %1 pixels").arg(size.width()).arg(size.height()));
    m_button->setPinnable(editor->imageExists());
    m_button->setThumbnail(Thumbnail::icon(m_thumbnailSource, m_button->iconSize()));
}

void HistoryButtonWidget::copyState(const HistoryButtonWidget &old) {
    m_button->onImageSaved(old.m_button->isImageSaved());
    m_button->onChangeSelectionMode(old.m_button->selectionMode());
    m_button->onImageSelected(old.m_button->isImageSelected());
    setPinned(old.isPinned());
    // Shows the picture at once; the queued update follows.
    m_thumbnailSource = old.m_thumbnailSource;
    m_button->setThumbnail(old.m_button->thumbnail());
}

void HistoryButtonWidget::onUpdateThumbnail() {
    if (!m_item)
        return;
    const QSize size = m_item->editor()->visibleRect().size();
    if (qint64(size.width()) * size.height() >= SlowArea)
        m_debounce->call();
    else
        m_throttle->call();
}

void HistoryButtonWidget::onPinHistory(bool pinned) {
    // Pinning replaces the row and sets the pin of its successor, which ends up here again.
    static bool running = false;
    if (running || !m_item)
        return;
    running = true;
    emit pinHistory(m_item, pinned);
    running = false;
}

void HistoryButtonWidget::onClicked() {
    emit clicked(m_item);
}

void HistoryButtonWidget::onContextMenuSave() {
    emit contextMenuSave(m_item);
}

void HistoryButtonWidget::onContextMenuDelete() {
    emit contextMenuDelete(m_item);
}

void HistoryButtonWidget::onContextMenuSaveImages() {
    emit contextMenuSaveImages();
}

void HistoryButtonWidget::onContextMenuDeleteImages() {
    emit contextMenuDeleteImages();
}

void HistoryButtonWidget::onContextMenuOpenSavedFolder() {
    emit contextMenuOpenSavedFolder(m_item);
}

void HistoryButtonWidget::onContextMenuOpenSavedImage() {
    emit contextMenuOpenSavedImage(m_item);
}

void HistoryButtonWidget::onContextMenuPrintImages() {
    emit contextMenuPrintImages(m_item);
}

void HistoryButtonWidget::paintEvent(QPaintEvent *) {
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
