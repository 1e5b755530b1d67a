#include "history/historylistwidget.h"

#include "canvas/editor.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/imagessetaside.h"
#include "output/clipboard.h"
#include "output/confirmdeletedialog.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "services/workfolder.h"
#include "ui/messagedialog.h"
#include "ui/uistyler.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QPointer>
#include <QSignalBlocker>
#include <QUrl>

HistoryListWidget::HistoryListWidget(QWidget *parent) : QListWidget(parent) {
    qRegisterMetaType<History>("History");
    QListWidget::setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    UIStyler::setDisadjust(this, true);
    connect(this, &QListWidget::itemSelectionChanged, this, &HistoryListWidget::syncSelection);
    connect(this, &QListWidget::itemSelectionChanged, this, &HistoryListWidget::onItemSelectionChanged);
}

HistoryListWidget::~HistoryListWidget() {
    // What is left in the work folder now is what the next start brings back.
    for (int row = 0; row < count(); ++row)
        rowItem(row)->editor()->abandonImage();
}

HistoryListWidgetItem *HistoryListWidget::rowItem(int row) const {
    return static_cast<HistoryListWidgetItem *>(item(row));
}

HistoryListWidgetItem *HistoryListWidget::itemOf(const Editor *editor) const {
    for (int row = 0; editor && row < count(); ++row) {
        if (rowItem(row)->editor() == editor)
            return rowItem(row);
    }
    return nullptr;
}

HistoryListWidgetItem *HistoryListWidget::selectedItem() const {
    const QList<QListWidgetItem *> selected = selectedItems();
    return selected.isEmpty() ? nullptr : static_cast<HistoryListWidgetItem *>(selected.first());
}

HistoryButtonWidget *HistoryListWidget::rowWidget(const HistoryListWidgetItem *item) const {
    return static_cast<HistoryButtonWidget *>(itemWidget(const_cast<HistoryListWidgetItem *>(item)));
}

void HistoryListWidget::insertImage(const QString &key, bool selected, int row) {
    auto *editor = new Editor(this);
    editor->setImageKey(key);
    editor->setWriteGuard([this](const QString &path, const std::function<bool()> &write) {
        return writeKeepingImages(path, write);
    });
    insertHistory(History(editor), selected, row);
}

HistoryListWidgetItem *HistoryListWidget::insertHistory(const History &record, bool selected, int row) {
    auto *item = new HistoryListWidgetItem;
    item->setRecord(record);
    insertItem(row < 0 ? pinnedCount(nullptr) : row, item);
    auto *widget = new HistoryButtonWidget(item, this);
    connectRow(widget, record.editor());
    item->setSizeHint(widget->sizeHint());
    setItemWidget(item, widget);
    emit widget->changeSelectionMode(m_selectionMode);
    widget->setChecked(selected);
    if (selected)
        setCurrentItem(item);
    return item;
}

void HistoryListWidget::connectRow(HistoryButtonWidget *widget, Editor *editor) {
    using List = HistoryListWidget;
    using Row = HistoryButtonWidget;
    connect(this, &List::changeSelectionMode, widget, &Row::changeSelectionMode);
    connect(widget, &Row::clicked, this, &List::onHistoryClicked);
    connect(widget, &Row::changeSelectChecked, this, &List::changeSelectChecked);
    connect(widget, &Row::contextMenuSave, this, &List::onContextMenuSave);
    connect(widget, &Row::contextMenuDelete, this, &List::onContextMenuDelete);
    connect(widget, &Row::contextMenuSaveImages, this, &List::onContextMenuSaveImages);
    connect(widget, &Row::contextMenuDeleteImages, this, &List::onContextMenuDeleteImages);
    connect(widget, &Row::contextMenuOpenSavedFolder, this, &List::onContextMenuOpenSavedFolder);
    connect(widget, &Row::contextMenuOpenSavedImage, this, &List::onContextMenuOpenSavedImage);
    connect(widget, &Row::contextMenuPrintImages, this, &List::contextMenuPrintImages);
    connect(widget, &Row::isSelectedItem, this,
            [this](bool &selected) { selected = !checkedItems().isEmpty(); });
    connect(widget, &Row::pinHistory, this, &List::onPinHistory);
    // Queued: the thumbnail is drawn after the scene has settled.
    connect(editor, &QGraphicsScene::changed, widget, &Row::onUpdateThumbnail, Qt::QueuedConnection);
    connect(editor, &Editor::imageSaved, widget, &Row::imageSaved);
}

void HistoryListWidget::removeItem(HistoryListWidgetItem *item, bool ask, bool destroy) {
    if (!item)
        return;
    if (ask) {
        const QPointer<Editor> editor = item->editor();
        if (!confirmRemoval(item))
            return;
        item = itemOf(editor);
        if (!item)
            return;
    }

    const int removedRow = row(item);
    const bool reselect = item->isSelected() || checkedItems().isEmpty();
    takeRow(item, destroy);
    emit updateHistoryCount();
    if (!reselect && !checkedItems().isEmpty())
        return;
    if (checkedItems().isEmpty()) {
        const QSignalBlocker oneChangeOnly(this);
        if (count() > 0)
            setCurrentRow(qMax(removedRow - 1, 0));
        else
            clearSelection();
    }
    emit itemSelectionChanged();
}

bool HistoryListWidget::confirmRemoval(HistoryListWidgetItem *item) {
    TindraPreferences *preferences = TindraPreferences::instance();
    const QPointer<Editor> editor = item->editor();
    if (editor->isSaved() || !preferences->GetBool(TindraPreferences::NotifyDeleteHistory, true))
        return true;
    ConfirmDeleteDialog dialog(ConfirmDeleteDialog::OneImage, this);
    const int answer = dialog.exec();
    preferences->SetBool(TindraPreferences::NotifyDeleteHistory, !dialog.isSkipChecked());
    if (answer != ConfirmDeleteDialog::SaveFirst)
        return answer == ConfirmDeleteDialog::Delete;
    emit contextMenuSave(itemOf(editor));
    return editor && editor->isSaved();
}

// The view would otherwise move the selection to a neighbour, and the canvas would load a capture that
// nobody asked for.
void HistoryListWidget::takeRow(HistoryListWidgetItem *item, bool destroy) {
    const QSignalBlocker oneChangeOnly(this);
    if (destroy) {
        // It deletes its file itself, after it has closed what is open in it.
        Editor *editor = item->editor();
        editor->setParent(nullptr);
        delete editor;
    }
    if (HistoryButtonWidget *widget = rowWidget(item)) {
        widget->detach();
        widget->close();
    }
    removeItemWidget(item);
    delete takeItem(row(item));
}

// The scenes go on with what was captured, while the file, the picture with its drawings in it, is the
// user's.
bool HistoryListWidget::writeKeepingImages(const QString &path, const std::function<bool()> &write) const {
    ImagesSetAside images(scenesOfFile(path));
    if (!images.areWhole() || !write())
        return false;
    images.replaceOriginals();
    return true;
}

QVector<Editor *> HistoryListWidget::scenesOfFile(const QString &path) const {
    const QString file = realPath(path);
    QVector<Editor *> scenes;
    for (int row = 0; row < count(); ++row) {
        Editor *editor = rowItem(row)->editor();
        const QString key = editor->imageKey();
        if (QFileInfo(key).isAbsolute() && realPath(key) == file)
            scenes.append(editor);
    }
    return scenes;
}

int HistoryListWidget::pinnedCount(const HistoryListWidgetItem *ignoredItem) const {
    int pinned = 0;
    for (int row = 0; row < count(); ++row) {
        const HistoryListWidgetItem *item = rowItem(row);
        if (item == ignoredItem)
            continue;
        const HistoryButtonWidget *widget = rowWidget(item);
        if (!widget || !widget->isPinned())
            break;
        ++pinned;
    }
    return pinned;
}

QVector<HistoryListWidgetItem *> HistoryListWidget::checkedItems() const {
    QVector<HistoryListWidgetItem *> checked;
    for (int row = 0; row < count(); ++row) {
        const HistoryButtonWidget *widget = rowWidget(rowItem(row));
        if (widget && widget->isChecked())
            checked.append(rowItem(row));
    }
    return checked;
}

void HistoryListWidget::setSelectionMode(HistorySelectMode mode) {
    m_selectionMode = mode;
    emit changeSelectionMode(mode);
}

void HistoryListWidget::syncSelection() {
    for (int row = 0; row < count(); ++row) {
        if (HistoryButtonWidget *widget = rowWidget(rowItem(row)))
            widget->setChecked(item(row)->isSelected());
    }
}

void HistoryListWidget::onItemSelectionChanged() {
    emit widgetSelectionChanged(selectedItem() != nullptr);
}

void HistoryListWidget::onHistoryClicked(HistoryListWidgetItem *item) {
    if (!item)
        return;
    rowWidget(item)->setChecked(true);
    setCurrentItem(item);
    item->setSelected(true);
}

void HistoryListWidget::onPinHistory(QListWidgetItem *listItem, bool pinned) {
    auto *item = static_cast<HistoryListWidgetItem *>(listItem);
    if (!item)
        return;
    const int block = pinnedCount(item);
    if (pinned && block >= PinLimit) {
        rowWidget(item)->setPinned(false);
        MessageDialog::information(this, tr("Tindra"), tr("Up to %0 images can be fixed.").arg(PinLimit));
        recordUsage("cap_303_22");
        return;
    }
    // Behind the block means one row further down while the old row still stands in it.
    const int behindBlock = row(item) < block ? block + 1 : block;
    replaceRow(item, pinned ? 0 : behindBlock);
}

void HistoryListWidget::replaceRow(HistoryListWidgetItem *item, int target) {
    const History record = item->record();
    HistoryListWidgetItem *selected = selectedItem();
    const HistoryButtonWidget *oldWidget = rowWidget(item);

    // The selected capture stays the same, so nobody hears of a change; its open text or crop goes on.
    const QSignalBlocker sameSelection(this);
    HistoryListWidgetItem *successor = insertHistory(record, true, target);
    takeRow(item, false);
    // The old widget is deleted later and can still be read.
    rowWidget(successor)->copyState(*oldWidget);
    setCurrentItem(selected && selected != item ? selected : successor);
    syncSelection();
}

void HistoryListWidget::onContextMenuSave(HistoryListWidgetItem *item) {
    emit contextMenuSave(item, false, true);
}

void HistoryListWidget::onContextMenuDelete(HistoryListWidgetItem *item) {
    removeItem(item, true, true);
}

void HistoryListWidget::onContextMenuSaveImages() {
    emit contextMenuSaveImages();
}

void HistoryListWidget::onContextMenuDeleteImages() {
    emit contextMenuDeleteImages();
}

void HistoryListWidget::onContextMenuOpenSavedFolder(HistoryListWidgetItem *item) {
    if (item)
        showInFileManager(item->editor()->savedPath());
}

void HistoryListWidget::onContextMenuOpenSavedImage(HistoryListWidgetItem *item) {
    if (item)
        QDesktopServices::openUrl(QUrl::fromUserInput(item->editor()->savedPath()));
}
