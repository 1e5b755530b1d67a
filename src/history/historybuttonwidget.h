#pragma once

#include "history/historyselectmode.h"

#include <QPixmap>
#include <QWidget>

class DebounceFunc;
class HistoryButton;
class HistoryListWidgetItem;
class QAction;
class Menu;
class ThrottleFunc;

/// The widget of one row: keeps the thumbnail up to date, offers the context menu, and passes on what the
/// user does, together with the row's item.
///
/// Borrows the item until `detach`; a row that was taken out of the list lives on for a moment without one.
class HistoryButtonWidget : public QWidget {
    Q_OBJECT
public:
    explicit HistoryButtonWidget(HistoryListWidgetItem *item, QWidget *parent = nullptr);

    /// The item is about to go; nothing is done or reported for it any more.
    void detach() { m_item = nullptr; }

    void setChecked(bool checked);
    bool isPinned() const;
    /// Whether the row is checked in select mode.
    bool isChecked() const;
    void setPinned(bool pinned);
    /// Draws the capture's thumbnail anew, or with `useCache` only scales the one of before. Without a
    /// picture of the capture the old thumbnail stays.
    void updateThumbnail(bool useCache);
    /// Takes over how another row looks.
    void copyState(const HistoryButtonWidget &old);

signals:
    void clicked(HistoryListWidgetItem *item);
    void imageSaved(bool saved);
    void changeSelectChecked(bool checked);
    void changeSelectionMode(HistorySelectMode mode);
    void contextMenuSave(HistoryListWidgetItem *item);
    void contextMenuDelete(HistoryListWidgetItem *item);
    void contextMenuSaveImages();
    void contextMenuDeleteImages();
    void contextMenuOpenSavedFolder(HistoryListWidgetItem *item);
    void contextMenuOpenSavedImage(HistoryListWidgetItem *item);
    void contextMenuPrintImages(HistoryListWidgetItem *item);
    /// Asks whether any row is checked; the receiver sets the flag.
    void isSelectedItem(bool &selected);
    void pinHistory(HistoryListWidgetItem *item, bool pinned);

public slots:
    void onClicked();
    void onUpdateThumbnail();
    void onContextMenuSave();
    void onContextMenuDelete();
    void onContextMenuSaveImages();
    void onContextMenuDeleteImages();
    void onContextMenuOpenSavedFolder();
    void onContextMenuOpenSavedImage();
    void onContextMenuPrintImages();

protected:
    bool event(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void onChangeSelectionMode(HistorySelectMode mode);
    void onPinHistory(bool pinned);

private:
    void connectButton();
    void buildMenu();
    QAction *addEntry(const QString &text, void (HistoryButtonWidget::*slot)());
    void enableMenu();

    ThrottleFunc *m_throttle;
    DebounceFunc *m_debounce;
    QPixmap m_thumbnailSource;
    HistoryListWidgetItem *m_item;
    HistoryButton *m_button;
    HistorySelectMode m_selectionMode = HistorySelectModes::Normal;
    Menu *m_menu;
    QAction *m_saveAll;
    QAction *m_deleteAll;
    QAction *m_openFolder;
    QAction *m_openImage;
    QAction *m_print;
};
