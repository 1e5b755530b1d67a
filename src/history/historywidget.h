#pragma once

#include "history/history.h"
#include "history/saveflow.h"

#include <QSize>
#include <QWidget>

class HistoryListWidget;
class HistoryListWidgetItem;
class QLabel;
class QListWidgetItem;
class QPushButton;
class QVBoxLayout;

/// The side panel that lists every capture of the session, and the one place through which the main window
/// adds, selects, saves and deletes captures.
///
/// Every record has a live scene of its own: selecting another row only shows another scene. The pointers
/// handed out by signals are good for the duration of the call. GUI thread only.
class HistoryWidget : public QWidget {
    Q_OBJECT
public:
    static constexpr int HistoryLimit = 100;

    explicit HistoryWidget(QWidget *parent = nullptr);

    /// Adds and selects the capture of that image key. False if the list is full and may not drop its
    /// oldest capture.
    bool addImage(const QString &key);
    /// Whether a row shows the image of that key.
    bool hasImage(const QString &key) const;
    /// Takes the last row away without asking.
    void removeOldestImage();
    void clearSelection();
    HistoryListWidgetItem *currentItem() const;
    /// Size of the selected capture in image pixels, after its crop; invalid without a selection.
    QSize currentImageSize() const;
    /// Whether the next capture would be refused.
    bool isFull() const;
    bool hasUnsavedImages() const;
    void selectNextRow();
    void selectPreviousRow();

signals:
    /// Another record was selected; null for none.
    void itemSelectionChanged(History *history);
    void shortcutDelete(HistoryListWidgetItem *item);
    void historyHide();

public slots:
    void onEmptyEditor(bool isEmpty);
    void onClickHistoryHide();
    void onClickSelectMode();
    void onItemSelectionChanged();
    void onSaveCurrentImage(bool autoSave, bool showResult);
    void onDeleteCurrentImage();
    void onSaveImage(QListWidgetItem *item, bool autoSave = false, bool showResult = true);
    void onClickDeleteImages();

private:
    void buildHead(QVBoxLayout *layout);
    void buildFoot(QVBoxLayout *layout);
    void connectParts();
    bool isSelecting() const;
    void updateCountInfo();
    bool confirmDeletion();
    void deleteRows(bool onlyChecked);

    SaveFlow m_saveFlow;
    QPushButton *m_historyHide;
    QLabel *m_historyTitle;
    QPushButton *m_historySelectMode;
    QLabel *m_countInfo;
    HistoryListWidget *m_historyListWidget;
    QPushButton *m_historySaveImages;
    QPushButton *m_historyDeleteImages;
};
