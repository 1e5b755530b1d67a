#include "history/historywidget.h"

#include "canvas/editor.h"
#include "history/batchsave.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "output/confirmdeletedialog.h"
#include "output/confirmsavedialog.h"
#include "output/filenameutil.h"
#include "output/reservedpaths.h"
#include "preferences/tindrapreferences.h"
#include "print/printpreviewdialog.h"
#include "services/usagestatistics.h"
#include "services/workfolder.h"
#include "ui/named.h"
#include "ui/uistyler.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Designed sizes, at 96 DPI.
constexpr int HideButtonWidth = 12;
constexpr int PanelMargin = 8;
constexpr int PanelSpacing = 6;
constexpr int RowSpacing = PanelSpacing / 2; // on either side of a row

QFrame *newLine(const char *name, QWidget *parent) {
    auto *line = named(new QFrame(parent), name);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setFixedHeight(1);
    return line;
}

} // namespace

HistoryWidget::HistoryWidget(QWidget *parent)
    : QWidget(parent), m_saveFlow(this), m_historyHide(named(new QPushButton(this), "historyHide_")),
      m_historyTitle(named(new QLabel(tr("history"), this), "historyTitle_")),
      m_historySelectMode(named(new QPushButton(tr("select"), this), "historySelectMode_")),
      m_countInfo(named(new QLabel(this), "countInfo_")),
      m_historyListWidget(named(new HistoryListWidget(this), "historyListWidget_")),
      m_historySaveImages(named(new QPushButton(this), "historySaveImages_")),
      m_historyDeleteImages(named(new QPushButton(this), "historyDeleteImages_")) {
    setAttribute(Qt::WA_StyledBackground);
    auto *panel = new QHBoxLayout(this);
    panel->setContentsMargins(0, 0, 0, 0);
    panel->setSpacing(0);
    m_historyHide->setFlat(true);
    m_historyHide->setAccessibleName(tr("Hide recent captures"));
    m_historyListWidget->setAccessibleName(tr("history"));
    // Its rows take the focus themselves.
    m_historyListWidget->setFocusPolicy(Qt::NoFocus);
    m_historyHide->setIcon(QIcon(QStringLiteral(":/res/history/hide.svg")));
    m_historyHide->setIconSize({HideButtonWidth, HideButtonWidth});
    m_historyHide->setFixedWidth(HideButtonWidth);
    m_historyHide->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    panel->addWidget(m_historyHide);

    auto *column = new QVBoxLayout;
    column->setContentsMargins(0, PanelMargin, PanelMargin, PanelMargin);
    column->setSpacing(PanelSpacing);
    panel->addLayout(column);
    buildHead(column);
    column->addWidget(m_historyListWidget);
    buildFoot(column);

    const QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons)
        button->setCursor(Qt::PointingHandCursor);
    connectParts();
    onClickSelectMode();
}

void HistoryWidget::buildHead(QVBoxLayout *layout) {
    m_historySelectMode->setCheckable(true);
    auto *head = new QHBoxLayout;
    head->addWidget(m_historyTitle);
    head->addStretch();
    head->addWidget(m_historySelectMode);
    layout->addLayout(head);
    m_countInfo->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(m_countInfo);
    layout->addWidget(newLine("line_3", this));
    m_historyListWidget->setFrameShape(QFrame::NoFrame);
    m_historyListWidget->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Belongs to no layout that would be scaled with the window.
    UIStyler::setScaleCallback(m_historyListWidget, [list = m_historyListWidget](double scale) {
        list->setSpacing(static_cast<int>(RowSpacing * scale));
    });
    m_historyListWidget->setSpacing(RowSpacing);
}

void HistoryWidget::buildFoot(QVBoxLayout *layout) {
    layout->addWidget(newLine("line_2", this));
    layout->addWidget(m_historySaveImages);
    layout->addWidget(newLine("line", this));
    layout->addWidget(m_historyDeleteImages);
}

void HistoryWidget::connectParts() {
    using List = HistoryListWidget;
    List *list = m_historyListWidget;
    connect(m_historyHide, &QPushButton::clicked, this, &HistoryWidget::onClickHistoryHide);
    connect(m_historySelectMode, &QPushButton::clicked, this, &HistoryWidget::onClickSelectMode);
    connect(this, &HistoryWidget::shortcutDelete, list, &List::onContextMenuDelete);
    connect(list, &List::itemSelectionChanged, this, &HistoryWidget::onItemSelectionChanged);
    connect(list, &List::changeSelectChecked, this, &HistoryWidget::updateCountInfo);
    connect(list, &List::updateHistoryCount, this, &HistoryWidget::updateCountInfo);
    connect(list, &List::contextMenuSave, this, &HistoryWidget::onSaveImage);
    connect(list, &List::contextMenuSaveImages, this, &HistoryWidget::onClickSaveImages);
    connect(list, &List::contextMenuDeleteImages, this, &HistoryWidget::onClickDeleteImages);
    connect(list, &List::contextMenuPrintImages, this, &HistoryWidget::onPrintImages);
    connect(m_historySaveImages, &QPushButton::clicked, this, &HistoryWidget::onClickSaveImages);
    connect(m_historyDeleteImages, &QPushButton::clicked, this, &HistoryWidget::onClickDeleteImages);
}

bool HistoryWidget::addImage(const QString &key) {
    if (m_historyListWidget->count() >= HistoryLimit) {
        if (isFull())
            return false;
        // The new capture is selected next; the canvas need not see the row above the dropped one.
        const QSignalBlocker oneChangeOnly(m_historyListWidget);
        removeOldestImage();
    }
    m_historyListWidget->insertImage(key, true, -1);
    updateCountInfo();
    return true;
}

bool HistoryWidget::hasImage(const QString &key) const {
    return imageKeys().contains(key);
}

HistoryListWidgetItem *HistoryWidget::itemOfFile(const QString &file) const {
    for (int row = 0; !file.isEmpty() && row < m_historyListWidget->count(); ++row) {
        HistoryListWidgetItem *item = m_historyListWidget->rowItem(row);
        if (QFileInfo(item->editor()->imageKey()).canonicalFilePath() == file)
            return item;
    }
    return nullptr;
}

QStringList HistoryWidget::imageKeys() const {
    QStringList keys;
    for (int row = 0; row < m_historyListWidget->count(); ++row)
        keys.append(m_historyListWidget->rowItem(row)->editor()->imageKey());
    return keys;
}

QStringList HistoryWidget::imageFiles() const {
    QStringList files = imageKeys();
    const auto isInMemory = [](const QString &key) { return QFileInfo(key).isRelative(); };
    files.erase(std::remove_if(files.begin(), files.end(), isInMemory), files.end());
    return files;
}

void HistoryWidget::removeOldestImage() {
    m_historyListWidget->removeItem(m_historyListWidget->rowItem(m_historyListWidget->count() - 1), false,
                                    true);
}

void HistoryWidget::clearSelection() {
    m_historyListWidget->clearSelection();
}

HistoryListWidgetItem *HistoryWidget::currentItem() const {
    return m_historyListWidget->selectedItem();
}

QSize HistoryWidget::currentImageSize() const {
    const HistoryListWidgetItem *item = currentItem();
    return item ? item->editor()->visibleRect().size() : QSize();
}

bool HistoryWidget::isFull() const {
    return !TindraPreferences::instance()->GetBool(TindraPreferences::AutoHistoryDelete, false) &&
           m_historyListWidget->count() >= HistoryLimit;
}

int HistoryWidget::freeRows() const {
    return qMax(0, HistoryLimit - m_historyListWidget->count());
}

bool HistoryWidget::hasUnsavedImages() const {
    for (int row = 0; row < m_historyListWidget->count(); ++row) {
        if (!m_historyListWidget->rowItem(row)->editor()->isSaved())
            return true;
    }
    return false;
}

void HistoryWidget::select(HistoryListWidgetItem *item) {
    m_historyListWidget->onHistoryClicked(item);
}

void HistoryWidget::selectNextRow() {
    const int next = m_historyListWidget->currentRow() + 1;
    if (next < m_historyListWidget->count())
        m_historyListWidget->setCurrentRow(next);
}

void HistoryWidget::selectPreviousRow() {
    const int current = m_historyListWidget->currentRow();
    if (current > 0)
        m_historyListWidget->setCurrentRow(current - 1);
}

bool HistoryWidget::isSelecting() const {
    return m_historySelectMode->isChecked();
}

void HistoryWidget::updateCountInfo() {
    int usable = m_historyListWidget->count();
    if (isSelecting()) {
        usable = m_historyListWidget->checkedItems().size();
        m_countInfo->setText(tr("[%0 selected]").arg(usable));
    } else {
        m_countInfo->setText(tr("[%0/%1]").arg(usable).arg(HistoryLimit));
    }
    m_historySaveImages->setEnabled(usable > 0);
    m_historyDeleteImages->setEnabled(usable > 0);
}

void HistoryWidget::onEmptyEditor(bool isEmpty) {
    m_historySelectMode->setChecked(false);
    onClickSelectMode();
    m_historySelectMode->setDisabled(isEmpty);
    m_historySaveImages->setDisabled(isEmpty);
    m_historyDeleteImages->setDisabled(isEmpty);
    updateCountInfo();
}

void HistoryWidget::onClickHistoryHide() {
    emit historyHide();
}

void HistoryWidget::onClickSelectMode() {
    const bool selecting = isSelecting();
    m_historySelectMode->setText(selecting ? tr("cancel") : tr("select"));
    m_historySelectMode->setToolTip(selecting ? tr("cancel select mode") : tr("choose images"));
    m_historySaveImages->setText(selecting ? tr("save selected images") : tr("save images"));
    m_historySaveImages->setToolTip(selecting ? tr("save selected images in history")
                                              : tr("save all images in history"));
    m_historyDeleteImages->setText(selecting ? tr("delete selected images") : tr("delete images"));
    m_historyDeleteImages->setToolTip(selecting ? tr("delete selected imagesin history")
                                                : tr("delete all images in history"));
    updateCountInfo();
    m_historyListWidget->setSelectionMode(selecting ? HistorySelectModes::Select
                                                    : HistorySelectModes::Normal);
    if (selecting)
        recordUsage("cap_30_19");
}

void HistoryWidget::onItemSelectionChanged() {
    const HistoryListWidgetItem *item = currentItem();
    if (!item) {
        emit itemSelectionChanged(nullptr);
        return;
    }
    History record = item->record();
    emit itemSelectionChanged(&record);
}

void HistoryWidget::onSaveCurrentImage(bool autoSave, bool showResult) {
    onSaveImage(currentItem(), autoSave, showResult);
}

void HistoryWidget::onDeleteCurrentImage() {
    if (isSelecting())
        return;
    if (HistoryListWidgetItem *item = currentItem())
        emit shortcutDelete(item);
}

void HistoryWidget::onSaveImage(QListWidgetItem *item, bool autoSave, bool showResult) {
    recordUsage("cap_30_01");
    if (!item)
        return;
    // The file dialog lets commands in that may take the row away.
    const QPointer<Editor> editor = static_cast<HistoryListWidgetItem *>(item)->editor();
    QString path = autoSave ? SaveFlow::autoSavePath() : QString();
    bool ok = true;
    if (!autoSave && !m_saveFlow.askSavePath(path, ok))
        return;
    if (editor)
        saveImageTo(editor, path, true, showResult);
    else
        m_saveFlow.reportVanished();
}

bool HistoryWidget::saveImageTo(Editor *editor, const QString &path, bool rememberFolder, bool showResult) {
    if (!editor)
        return false;
    bool written = false;
    // A dialog inside another save may name the very file that this one is about to write. Once it is
    // written, and while that is reported, it is a file like any other.
    if (!ReservedPaths::contains(path)) {
        const ReservedPaths target({path});
        written = writeImages([=] { return SaveFlow::writeImage(editor, path) ? 1 : 0; }) == 1;
    }
    m_saveFlow.reportImage(written, path, rememberFolder, showResult);
    emit imagesReported();
    return written;
}

int HistoryWidget::writeImages(const std::function<int()> &write) {
    int count = 0;
    {
        const QScopedValueRollback<bool> writing(m_writingImages, true);
        count = write();
    }
    emit imagesWritten();
    return count;
}

void HistoryWidget::onClickSaveImages() {
    // The first capture is written with events processed around it, further clicks among them.
    if (m_savingImages)
        return;
    const QScopedValueRollback<bool> saving(m_savingImages, true);
    const bool selecting = isSelecting();
    const QVector<QPointer<Editor>> meant = capturesMeant();
    recordUsage(selecting ? "cap_30_20" : "cap_30_22");
    ConfirmSaveDialog dialog(selecting ? ConfirmSaveDialog::SelectedImages : ConfirmSaveDialog::AllImages,
                             this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    SaveFlow::reportSaveFormat(dialog.formatText());
    QString firstPath;
    const int count = saveImages(meant, firstPath);
    m_saveFlow.reportBatch(count, firstPath);
    recordUsage("cap_20_005");
    if (selecting)
        endSelectMode();
    emit imagesReported();
}

int HistoryWidget::saveImages(const QVector<QPointer<Editor>> &captures, QString &firstPath) {
    const QString folder = FileNameUtil::folderOrDefault(
        TindraPreferences::instance()->GetString(TindraPreferences::FilePath, QString()));
    if (isInWorkFolder(folder) || !QDir().mkpath(folder))
        return 0;
    BatchSave batch(FileNameUtil::generateFileName(folder, false),
                    SaveFlow::qualityFor(FileNameUtil::currentFileSuffix()));
    // A file under the name of a row would be deleted with it.
    const ReservedPaths keys(imageFiles());
    // The oldest capture gets the lowest number.
    const int count = writeImages([&] { return batch.run({captures.crbegin(), captures.crend()}); });
    firstPath = batch.firstPath();
    return count;
}

void HistoryWidget::onClickDeleteImages() {
    // The question lets commands in: what arrives meanwhile was not meant, and what vanishes is gone.
    const bool selecting = isSelecting();
    const QVector<QPointer<Editor>> meant = capturesMeant();
    recordUsage(selecting ? "cap_30_21" : "cap_30_23");
    if (!confirmDeletion())
        return;
    deleteCaptures(meant);
    if (m_historyListWidget->count() > 0)
        m_historyListWidget->onHistoryClicked(m_historyListWidget->rowItem(0));
    onItemSelectionChanged();
    if (selecting)
        endSelectMode();
    updateCountInfo();
}

void HistoryWidget::endSelectMode() {
    m_historySelectMode->setChecked(false);
    onClickSelectMode();
}

bool HistoryWidget::confirmDeletion() {
    TindraPreferences *preferences = TindraPreferences::instance();
    if (!preferences->GetBool(TindraPreferences::NotifyDeleteAllHistory, true))
        return true;
    ConfirmDeleteDialog dialog(
        isSelecting() ? ConfirmDeleteDialog::SelectedImages : ConfirmDeleteDialog::AllImages, this);
    const int answer = dialog.exec();
    preferences->SetBool(TindraPreferences::NotifyDeleteAllHistory, !dialog.isSkipChecked());
    return answer == ConfirmDeleteDialog::Delete;
}

void HistoryWidget::printCurrentImage() {
    if (const HistoryListWidgetItem *item = currentItem())
        printImages({item->editor()});
}

void HistoryWidget::onPrintImages(HistoryListWidgetItem *item) {
    if (isSelecting())
        printImages(capturesMeant());
    else if (item)
        printImages({item->editor()});
}

void HistoryWidget::printImages(const QVector<QPointer<Editor>> &captures) {
    QVector<QPixmap> images;
    for (const QPointer<Editor> &capture : captures) {
        // A stroke that is still being drawn would go on behind the dialog.
        capture->finishDrag();
        const QPixmap image = capture->flatten(true, false);
        if (!image.isNull())
            images.append(image.copy());
    }
    if (images.isEmpty())
        return;
    PrintPreviewDialog dialog(this);
    for (const QPixmap &image : qAsConst(images))
        dialog.addImage(image);
    dialog.exec();
}

QVector<QPointer<Editor>> HistoryWidget::capturesMeant() const {
    QVector<QPointer<Editor>> captures;
    const QVector<HistoryListWidgetItem *> checked = m_historyListWidget->checkedItems();
    for (int row = 0; row < m_historyListWidget->count(); ++row) {
        HistoryListWidgetItem *item = m_historyListWidget->rowItem(row);
        if (!isSelecting() || checked.contains(item))
            captures.append(item->editor());
    }
    return captures;
}

void HistoryWidget::deleteCaptures(const QVector<QPointer<Editor>> &captures) {
    const QSignalBlocker blocker(m_historyListWidget);
    for (const QPointer<Editor> &capture : captures)
        m_historyListWidget->removeItem(m_historyListWidget->itemOf(capture), false, true);
}
