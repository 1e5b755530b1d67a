#pragma once

#include "history/history.h"
#include "history/historyselectmode.h"

#include <QListWidget>
#include <QVector>

#include <functional>

class Editor;
class HistoryButtonWidget;
class HistoryListWidgetItem;

/// The list of captures: rows, their order, selection, check boxes and pins.
///
/// Every row owns its scene: `insertImage` makes it, `removeItem` with `destroy` ends it and its image
/// file. A save over such a file leaves it to the user: the scene goes on with a copy of what was there. When
/// the list itself goes, the scenes go and the files stay, because only a normal exit clears them away.
/// Pinned rows stand first, the others follow, newest first. An item may vanish while a dialog is open; keep
/// its `Editor` in a `QPointer` and ask `itemOf`.
class HistoryListWidget : public QListWidget {
    Q_OBJECT
public:
    static constexpr int PinLimit = 5;

    explicit HistoryListWidget(QWidget *parent = nullptr);
    ~HistoryListWidget() override;

    /// Adds a capture; a negative row stands for the one behind the pinned block.
    void insertImage(const QString &key, bool selected, int row);
    HistoryListWidgetItem *insertHistory(const History &record, bool selected, int row);
    /// Takes a row out, after a question if `ask` and the capture is unsaved; with `destroy` its scene and
    /// image file go too. A null item does nothing.
    void removeItem(HistoryListWidgetItem *item, bool ask, bool destroy);
    /// Rows of the pinned block, without `ignoredItem`.
    int pinnedCount(const HistoryListWidgetItem *ignoredItem) const;
    /// The rows checked in select mode, top to bottom.
    QVector<HistoryListWidgetItem *> checkedItems() const;
    void setSelectionMode(HistorySelectMode mode);
    HistorySelectMode selectionMode() const { return m_selectionMode; }

    HistoryListWidgetItem *rowItem(int row) const;
    /// The row of that scene, or null.
    HistoryListWidgetItem *itemOf(const Editor *editor) const;
    /// The first selected row, or null.
    HistoryListWidgetItem *selectedItem() const;
    HistoryButtonWidget *rowWidget(const HistoryListWidgetItem *item) const;

signals:
    void changeSelectionMode(HistorySelectMode mode);
    void changeSelectChecked(bool checked);
    void updateHistoryCount();
    /// Whether a row is selected now.
    void widgetSelectionChanged(bool selected);
    void contextMenuSave(QListWidgetItem *item, bool autoSave = false, bool showResult = true);
    void contextMenuSaveImages();
    void contextMenuDeleteImages();
    void contextMenuPrintImages(HistoryListWidgetItem *item);

public slots:
    void onContextMenuSave(HistoryListWidgetItem *item);
    void onContextMenuDelete(HistoryListWidgetItem *item);
    void onContextMenuSaveImages();
    void onContextMenuDeleteImages();
    void onContextMenuOpenSavedFolder(HistoryListWidgetItem *item);
    void onContextMenuOpenSavedImage(HistoryListWidgetItem *item);
    void onHistoryClicked(HistoryListWidgetItem *item);
    void onPinHistory(QListWidgetItem *item, bool pinned);
    void onItemSelectionChanged();

private slots:
    void syncSelection();

private:
    void connectRow(HistoryButtonWidget *widget, Editor *editor);
    bool confirmRemoval(HistoryListWidgetItem *item);
    void takeRow(HistoryListWidgetItem *item, bool destroy);
    bool writeKeepingImages(const QString &path, const std::function<bool()> &write) const;
    QVector<Editor *> scenesOfFile(const QString &path) const;
    void replaceRow(HistoryListWidgetItem *item, int target);

    HistorySelectMode m_selectionMode = HistorySelectModes::Normal;
};
