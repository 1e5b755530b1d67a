#pragma once

#include "history/history.h"
#include "history/saveflow.h"

#include <QPointer>
#include <QSize>
#include <QStringList>
#include <QVector>
#include <QWidget>

#include <functional>

class Editor;
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
/// handed out by signals are good for the duration of the call. Pinned captures outlive a normal exit as
/// files; nothing that fails there is told to the user. GUI thread only.
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
    /// The row that shows the file of that canonical path; null for none.
    HistoryListWidgetItem *itemOfFile(const QString &file) const;
    /// Of all rows, top to bottom.
    QStringList imageKeys() const;
    /// The files that go with their rows, wherever they lie.
    QStringList imageFiles() const;
    /// Takes the last row away without asking.
    void removeOldestImage();
    void clearSelection();
    HistoryListWidgetItem *currentItem() const;
    /// Size of the selected capture in image pixels, after its crop; invalid without a selection.
    QSize currentImageSize() const;
    /// Whether the next capture would be refused.
    bool isFull() const;
    /// How many captures fit before the list is full.
    int freeRows() const;
    bool hasUnsavedImages() const;
    /// Writes the picture with its drawings in the format of the path's suffix, marks the capture as saved
    /// and tells the user how it went. A null `editor` gives false.
    bool saveImageTo(Editor *editor, const QString &path, bool rememberFolder, bool showResult);
    /// Whether captures are being written at this moment.
    bool isWritingImages() const { return m_writingImages; }
    void select(HistoryListWidgetItem *item);
    void selectNextRow();
    void selectPreviousRow();
    /// Shows the print preview of the selected capture.
    void printCurrentImage();

    /// Writes the picture of each pinned row, without drawings and crop, to the folder of pinned captures,
    /// which holds nothing else afterwards. Where that cannot be written, the capture's own file is moved
    /// there; what cannot be read is left out. Does nothing while another editor has the work folder.
    ///
    /// Returns the files of those pinned captures that could not be kept so: the only place where they are.
    QStringList SavePinnedHistories();
    /// The files in the folder of pinned captures.
    QStringList pinnedFilePaths() const;
    void removePinnedFiles();
    /// Copies the pinned captures into the work folder and returns the copies. One whose number is taken
    /// there stays behind.
    QStringList restorePinnedImages();
    /// Pins the first `rows` rows where they stand, or unpins the pinned block.
    void setPinnedImages(bool pinned, int rows = HistoryLimit);

signals:
    /// Another record was selected; null for none.
    void itemSelectionChanged(History *history);
    void shortcutDelete(HistoryListWidgetItem *item);
    void historyHide();
    /// A capture, or a batch of them, has been written, as far as that was possible.
    void imagesWritten();
    /// And the user knows of it.
    void imagesReported();

public slots:
    void onEmptyEditor(bool isEmpty);
    void onClickHistoryHide();
    void onClickSelectMode();
    void onItemSelectionChanged();
    void onSaveCurrentImage(bool autoSave, bool showResult);
    void onDeleteCurrentImage();
    void onSaveImage(QListWidgetItem *item, bool autoSave = false, bool showResult = true);
    void onClickSaveImages();
    void onClickDeleteImages();
    /// Shows the print preview of the checked captures in select mode, else of that row.
    void onPrintImages(HistoryListWidgetItem *item);

private:
    void buildHead(QVBoxLayout *layout);
    void buildFoot(QVBoxLayout *layout);
    void connectParts();
    bool isSelecting() const;
    void updateCountInfo();
    void endSelectMode();
    /// Saves captures, given from the newest to the oldest, by the settings; how many were written.
    int saveImages(const QVector<QPointer<Editor>> &captures, QString &firstPath);
    /// Carries out `write`, which returns how many captures it wrote, as a time in which no end comes.
    int writeImages(const std::function<int()> &write);
    void printImages(const QVector<QPointer<Editor>> &captures);
    bool confirmDeletion();
    /// What a command for many captures means now: the checked rows in select mode, else all of them.
    QVector<QPointer<Editor>> capturesMeant() const;
    /// The folder of pinned captures, ready for new ones; empty when it cannot be had.
    QString emptiedPinFolder();
    bool savePin(Editor *editor, const QString &path) const;
    void deleteCaptures(const QVector<QPointer<Editor>> &captures);

    SaveFlow m_saveFlow;
    bool m_savingImages = false;
    bool m_writingImages = false;
    QPushButton *m_historyHide;
    QLabel *m_historyTitle;
    QPushButton *m_historySelectMode;
    QLabel *m_countInfo;
    HistoryListWidget *m_historyListWidget;
    QPushButton *m_historySaveImages;
    QPushButton *m_historyDeleteImages;
};
