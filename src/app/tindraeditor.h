#pragma once

#include "app/restoredcaptures.h"
#include "app/toolselection.h"
#include "canvas/editor.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>

class AiTools;
class Banners;
class BoundServices;
class CaptureFitting;
class EditorView;
class ExitRoutine;
class History;
class HistoryWidget;
class PreferencesFlow;
class QSessionManager;
class ShowSteps;
class Toolbar;

/// The one top-level window: takes command lines, owns toolbar, canvas and recent captures, mirrors the tool
/// of the scene that is shown, and decides between hiding and exiting.
///
/// Not shown by its constructor. GUI thread only.
class TindraEditor : public QMainWindow {
    Q_OBJECT
public:
    explicit TindraEditor(QWidget *parent = nullptr);
    ~TindraEditor() override;

    /// Adds the capture of that image key. A hidden window comes up, unless `skip`, and is fitted to the
    /// capture, which was taken at `point` of the desktop; a visible one stays as it is.
    void AddNewPixmap(const QString &path, const QPoint &point, bool skip);
    /// Shows the window in the middle of its screen, or only brings it to the front.
    void bringUp();
    /// Ends the program without a question and without clearing anything away.
    void kill();
    /// Whether the end of the program has been carried out, if need be before the event loop of the program
    /// ran.
    bool hasLeft() const;
    bool isHideBlocked() const { return m_hideBlock.isActive(); }
    /// Tells the capture process that the window is hidden, and whether the recent captures are full.
    void postHidden() const;

    /// Tells the user, once, that captures left over from the last run are back.
    void tellAboutRestoredCaptures();

signals:
    /// A command line arrived, by whatever road; a direct call of `treatCommand`.
    void commandArrived(QString cmdline);
    void emptyEditor(bool isEmpty);
    void clickHistoryHide();
    void saveCurrentImage(bool autoSave, bool showResult);
    /// The program ends: no more command lines are treated.
    void leaving();

public slots:
    /// Ignores "/hide" for that time, so that one already on its way cannot take a new capture away.
    void BlockHide(int milliseconds);
    /// Parses one command line completely and then carries out at most one main action and the save action.
    void treatCommand(QString cmdline);
    void OnSystemSessionOut(QSessionManager &manager);
    void onClickCapture();
    void onClickSave();
    void onClickCopy();
    void onClickUndo();
    void onClickRedo();
    void onClickReset();
    void onAiToolsAction(QString pluginId);
    void onFigureSelected(Editor::ShapeType shapeType, Qt::PenStyle lineType, QColor fillColor,
                          QColor lineColor);
    void onPenSelected(QColor lineColor);
    void onHighlighterSelected(QColor lineColor);
    void onLineSelected(int lineWidth);
    void onClickText();
    void onClickCrop();
    void onMosaicSelected(int strength);
    void onClickEraser();
    void onClickPrint();
    void onClickUpdate();
    void onClickPreference(int page = 0, bool modal = false);
    void onClickClose();
    void onClickHelp();
    void onClickReadme();
    void onClickFAQ();
    void onClickCustomerServices();
    void onClickBrindlePage();
    void onClickNorvanePage();
    void onClickAbout(bool modal = false);
    /// The menu of the toolbar's last button is about to open.
    void onClickMenuBtn();
    void onClickHistoryShow();
    void onClickHistoryHide();
    void onHistorySelectionChanged(History *history);
    void onChangeShape(Editor::ShapeType shapeType);
    void onCanUndo(bool can);
    void onCanRedo(bool can);

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildLayout();
    void buildToolbar();
    void connectPanels();
    void connectAiTools();
    void connectView();
    void connectHistory();
    /// Brings back the pinned captures and what an end other than an exit left in the work folder.
    void restoreHistories();
    bool addCapture(const QString &path);
    void reportFailedCapture();
    void finishOpenItem();
    void leaveSpecialState();
    void settleSize();
    void centre();
    void showForCapture(const QString &path, bool added);
    void fitTo(const QSize &image, const QPoint &point);

    std::unique_ptr<BoundServices> m_services;
    AiTools *m_aiTools; ///< ahead of those that ask whether there are any
    EditorView *m_view;
    HistoryWidget *m_history;
    Toolbar *m_toolbar;
    Banners *m_banners = nullptr;
    ToolSelection m_tools;
    ExitRoutine *m_exit;
    PreferencesFlow *m_preferences;
    CaptureFitting *m_fitting;
    RestoredCaptures m_restored;
    ShowSteps *m_shows = nullptr;
    bool m_centresAtShow = false;
    bool m_isEmpty = false; ///< as last told; before that, nobody knows
    QTimer m_hideBlock;
};
