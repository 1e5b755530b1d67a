#include "app/tindraeditor.h"

#include "app/aitools.h"
#include "app/application.h"
#include "app/banners.h"
#include "app/boundservices.h"
#include "app/capturefitting.h"
#include "app/commandexecutor.h"
#include "app/commandline.h"
#include "app/exitroutine.h"
#include "app/keyboardactions.h"
#include "app/managementprogramoffer.h"
#include "app/preferencesflow.h"
#include "app/showsteps.h"
#include "app/toolbar.h"
#include "canvas/editorview.h"
#include "history/historywidget.h"
#include "ipc/capturemessages.h"
#include "ipc/imageprovider.h"
#include "output/filenameutil.h"
#include "preferences/tindrapreferences.h"
#include "services/tracelog.h"
#include "services/usagestatistics.h"
#include "services/workfolder.h"
#include "ui/aboutdialog.h"
#include "ui/menu.h"
#include "ui/messagedialog.h"
#include "ui/windowplacement.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize StartSize(430, 298);       // at 96 DPI
constexpr int HistoryWidth = 172;          // at 96 DPI
constexpr int HideBlockAfterCapture = 500; // milliseconds

// Addresses come from the translation, so that each language can have pages of its own.
void openPage(const QString &address) {
    QDesktopServices::openUrl(QUrl(address));
}

/// The screen that holds the point, or the primary one for a point off all screens.
QRect availableAt(const QPoint &point) {
    const QScreen *screen = QGuiApplication::screenAt(point);
    return (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
}

} // namespace

TindraEditor::TindraEditor(QWidget *parent)
    : QMainWindow(parent), m_services(new BoundServices(Application::olderCrashClient())),
      m_aiTools(new AiTools(this)), m_view(new EditorView(nullptr, m_aiTools->isAvailable())),
      m_history(new HistoryWidget), m_toolbar(nullptr), m_tools(m_view),
      m_exit(new ExitRoutine(this, m_history)), m_preferences(new PreferencesFlow(this)),
      m_fitting(new CaptureFitting(this)),
      m_restored(m_history, [this](const QString &path) { return addCapture(path); }) {
    m_services->startCrashClient();
    buildLayout();
    // The session manager would be told to call the end of the session off, as no close is ever accepted.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &TindraEditor::OnSystemSessionOut,
            Qt::DirectConnection);
    connect(this, &TindraEditor::commandArrived, this, &TindraEditor::treatCommand);
    connect(m_exit, &ExitRoutine::leaving, this, &TindraEditor::leaving);
    connect(m_exit, &ExitRoutine::servicesEnding, this, [this] {
        m_services->end();
        m_banners->forget();
    });
    m_hideBlock.setSingleShot(true);

    TindraPreferences::instance()->Init();
    FileNameUtil::initialize();

    buildToolbar();
    connectPanels();
    connectAiTools();
    connectView();
    connectHistory();
    emit m_history->itemSelectionChanged(nullptr);
    new KeyboardActions(this, m_view, m_history);
    onChangeShape(Editor::ShapeType(
        TindraPreferences::instance()->GetInt(TindraPreferences::LastDrawingItem, Editor::Rectangle)));
    // After the first command line, and inside the event loop.
    QTimer::singleShot(0, this, &TindraEditor::restoreHistories);
}

TindraEditor::~TindraEditor() = default;

void TindraEditor::buildLayout() {
    setObjectName(QStringLiteral("TindraEditorClass"));
    setWindowTitle(tr("TindraEditor"));
    // The menu that a main window has by itself would hide the toolbar, and nothing brings that back.
    setContextMenuPolicy(Qt::NoContextMenu);
    resize(StartSize);
    auto *mainWidget = new QWidget(this);
    mainWidget->setObjectName(QStringLiteral("mainWidget_"));
    auto *column = new QVBoxLayout(mainWidget);
    column->setObjectName(QStringLiteral("verticalLayout_2"));
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("imageHorizontalLayout_"));
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    column->addLayout(row);
    m_view->setObjectName(QStringLiteral("graphicsView_"));
    m_history->setObjectName(QStringLiteral("historyWidget_"));
    m_history->setMinimumSize(HistoryWidth, 0);
    m_history->setMaximumSize(HistoryWidth, QWIDGETSIZE_MAX);
    row->addWidget(m_view);
    row->addWidget(m_history);
    setCentralWidget(mainWidget);
}

void TindraEditor::buildToolbar() {
    m_toolbar = new Toolbar(this, m_aiTools->isAvailable() ? m_aiTools->menu() : nullptr);
    m_toolbar->setWindowTitle(tr("toolBar"));
    addToolBar(Qt::TopToolBarArea, m_toolbar);
    connect(this, &TindraEditor::emptyEditor, m_toolbar, &Toolbar::onEmptyEditor);
    m_banners = new Banners(&m_services->banner(), m_toolbar, m_view, this);
    m_shows = new ShowSteps(this, m_toolbar);
}

void TindraEditor::connectPanels() {
    const ToolPanels *panels = m_toolbar->panels();
    connect(panels, &ToolPanels::figureSelected, this, &TindraEditor::onFigureSelected);
    connect(panels, &ToolPanels::penSelected, this, &TindraEditor::onPenSelected);
    connect(panels, &ToolPanels::highlighterSelected, this, &TindraEditor::onHighlighterSelected);
    connect(panels, &ToolPanels::lineSelected, this, &TindraEditor::onLineSelected);
    connect(panels, &ToolPanels::mosaicSelected, this, &TindraEditor::onMosaicSelected);
    m_view->setFigureMenu(panels->menu(ToolPanels::Figure));
    m_view->setPenMenu(panels->menu(ToolPanels::Pen));
    m_view->setHighlighterMenu(panels->menu(ToolPanels::Highlighter));
    m_view->setLineWidthMenu(panels->menu(ToolPanels::LineWidth));
    m_view->setMosaicMenu(panels->menu(ToolPanels::Mosaic));
}

void TindraEditor::connectAiTools() {
    connect(m_aiTools, &AiTools::chosen, this, &TindraEditor::onAiToolsAction);
    connect(this, &TindraEditor::leaving, m_aiTools, &AiTools::onLeaving);
    m_view->setAiToolsMenu(m_aiTools->menu());
}

void TindraEditor::connectView() {
    connect(m_view, &EditorView::changeShape, this, &TindraEditor::onChangeShape);
    connect(m_view, &EditorView::contextMenuText, this, &TindraEditor::onClickText);
    connect(m_view, &EditorView::contextMenuCrop, this, &TindraEditor::onClickCrop);
    connect(m_view, &EditorView::contextMenuEraser, this, &TindraEditor::onClickEraser);
    connect(m_view, &EditorView::contextMenuReset, this, &TindraEditor::onClickReset);
    connect(m_view, &EditorView::contextMenuPrint, this, &TindraEditor::onClickPrint);
    connect(m_view, &EditorView::canUndo, this, &TindraEditor::onCanUndo);
    connect(m_view, &EditorView::canRedo, this, &TindraEditor::onCanRedo);
    connect(this, &TindraEditor::emptyEditor, m_view, &EditorView::onEmptyEditor);
    connect(m_view, &EditorView::moveMainWindow, m_view, &EditorView::onMoveMainWindow);
    connect(m_view, &EditorView::clickHistoryShow, this, &TindraEditor::onClickHistoryShow);
    connect(this, &TindraEditor::clickHistoryHide, m_view, &EditorView::onClickHistoryHide);
}

void TindraEditor::connectHistory() {
    connect(m_history, &HistoryWidget::historyHide, this, &TindraEditor::onClickHistoryHide);
    connect(m_history, &HistoryWidget::itemSelectionChanged, this, &TindraEditor::onHistorySelectionChanged);
    connect(this, &TindraEditor::saveCurrentImage, m_history, &HistoryWidget::onSaveCurrentImage);
    connect(this, &TindraEditor::emptyEditor, m_history, &HistoryWidget::onEmptyEditor);
}

void TindraEditor::treatCommand(QString cmdline) {
    trace(2, QStringLiteral("treatCommand"), "%ls", cmdline.utf16());
    CommandExecutor(this).execute(CommandLine::parse(cmdline));
}

void TindraEditor::AddNewPixmap(const QString &path, const QPoint &point, bool skip) {
    // One that came into the work folder before its line, while this editor started, is there already.
    const bool added = m_restored.select(path) || addCapture(path);
    if (isVisible())
        return;
    if (!skip)
        showForCapture(path, added);
    else
        settleSize();
    if (added)
        fitTo(ImageProvider::instance()->pixmap(path).size(), point);
    keepOnScreen(this);
    bringToFront(this);
    if (!skip)
        tellAboutRestoredCaptures();
    if (!added) {
        m_history->clearSelection();
        reportFailedCapture();
    }
}

bool TindraEditor::addCapture(const QString &path) {
    const bool added = !ImageProvider::instance()->pixmap(path).isNull() && m_history->addImage(path);
    // A refused capture must not go on taking its share of the memory budget.
    if (!added && !m_history->hasImage(path))
        ImageProvider::instance()->dropFromMemory(path);
    return added;
}

void TindraEditor::reportFailedCapture() {
    MessageDialog::warning(this, tr("Tindra"), tr("Failed to capture image."));
}

void TindraEditor::restoreHistories() {
    // Another editor that has the folder shows these captures, and they are not the last run's.
    if (m_exit->hasLeft() || !ownsWorkFolder())
        return;
    const bool allRead = m_restored.bringBack();
    if (isVisible()) {
        // The first command line has shown the window before there was anything to tell.
        tellAboutRestoredCaptures();
        return;
    }
    if (m_history->currentItem()) {
        settleSize();
        fitTo(m_history->currentImageSize(), QPoint());
        keepOnScreen(this);
    }
    // Unlike a new capture that fails, which the user waits for, a broken old one clears no selection.
    if (!allRead)
        reportFailedCapture();
}

void TindraEditor::showForCapture(const QString &path, bool added) {
    BlockHide(HideBlockAfterCapture);
    if (added)
        recordUsage("cap_30_03");
    leaveSpecialState();
    show();
    trace(2, QStringLiteral("AddNewPixmap"), "show %ls", path.utf16());
    PostMessageToTindra(CaptureMessage::ShownForCapture, 0, 0);
}

void TindraEditor::fitTo(const QSize &image, const QPoint &point) {
    m_fitting->apply({image, m_history->width(), m_toolbar->height(), point, availableAt(point), {}});
}

void TindraEditor::leaveSpecialState() {
    if (windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen))
        showNormal();
}

// Before the first show neither style nor layout have had their say about the sizes.
void TindraEditor::settleSize() {
    ensurePolished();
    layout()->activate();
    resize(size().expandedTo(minimumSize()).expandedTo(minimumSizeHint()));
}

void TindraEditor::bringUp() {
    if (!isVisible()) {
        leaveSpecialState();
        // That has shown it already, if there was one to leave.
        if (isVisible())
            centre();
        m_centresAtShow = true;
        show();
        m_centresAtShow = false;
    }
    bringToFront(this);
}

void TindraEditor::centre() {
    settleSize();
    centreOnScreen(this, frameGeometry().size());
    keepOnScreen(this);
}

void TindraEditor::tellAboutRestoredCaptures() {
    m_restored.tell(this);
}

void TindraEditor::BlockHide(int milliseconds) {
    // A further capture begins the time anew.
    m_hideBlock.start(std::max(milliseconds, m_hideBlock.remainingTime()));
}

void TindraEditor::postHidden() const {
    PostMessageToTindra(CaptureMessage::Hidden, m_history->isFull() ? 1 : 0, 0);
}

void TindraEditor::finishOpenItem() {
    if (Editor *editor = m_view->editor())
        editor->finishCurrentItem(false);
}

void TindraEditor::onHistorySelectionChanged(History *history) {
    finishOpenItem();
    m_view->setEditor(history ? history->editor() : nullptr);
    const bool isEmpty = !history;
    // Only then: the panel ends its select mode at it, and another row must not cost the checks.
    if (m_isEmpty != isEmpty) {
        m_isEmpty = isEmpty;
        emit emptyEditor(isEmpty);
    }
    // Enabled buttons stand for a capture; what its scene can do comes on top.
    m_view->onEditorChanged();
}

void TindraEditor::onChangeShape(Editor::ShapeType shapeType) {
    m_toolbar->showShape(shapeType);
}

void TindraEditor::onCanUndo(bool can) {
    m_toolbar->onCanUndo(can);
}

void TindraEditor::onCanRedo(bool can) {
    m_toolbar->onCanRedo(can);
}

void TindraEditor::onClickCapture() {
    PostMessageToTindra(CaptureMessage::NewCapture, 0, 0);
}

void TindraEditor::onClickSave() {
    emit saveCurrentImage(false, true);
}

void TindraEditor::onClickCopy() {
    recordUsage("cap_30_02");
    if (Editor *editor = m_view->editor())
        editor->copyToClipboard(this);
}

void TindraEditor::onClickUndo() {
    if (Editor *editor = m_view->editor())
        editor->undo();
    recordUsage("cap_30_10");
}

void TindraEditor::onClickRedo() {
    if (Editor *editor = m_view->editor())
        editor->redo();
    recordUsage("cap_30_11");
}

void TindraEditor::onClickReset() {
    if (Editor *editor = m_view->editor())
        editor->reset();
    recordUsage("cap_30_09");
}

void TindraEditor::onAiToolsAction(QString pluginId) {
    m_aiTools->run(pluginId, m_view);
}

void TindraEditor::onFigureSelected(Editor::ShapeType shapeType, Qt::PenStyle lineType, QColor fillColor,
                                    QColor lineColor) {
    m_toolbar->checkEntry(shapeType);
    m_tools.selectFigure(shapeType, lineType, fillColor, lineColor);
}

void TindraEditor::onPenSelected(QColor lineColor) {
    m_toolbar->checkEntry(Editor::Pen);
    m_tools.selectPen(lineColor);
}

void TindraEditor::onHighlighterSelected(QColor lineColor) {
    m_toolbar->checkEntry(Editor::Highlighter);
    m_tools.selectHighlighter(lineColor);
}

void TindraEditor::onLineSelected(int lineWidth) {
    // A width is no tool: the overflow menu keeps the check of the one in use.
    m_tools.selectLineWidth(lineWidth);
}

void TindraEditor::onClickText() {
    m_toolbar->checkEntry(Editor::Text);
    m_tools.selectText();
}

void TindraEditor::onClickCrop() {
    m_toolbar->checkEntry(Editor::Crop);
    m_tools.selectCrop();
}

void TindraEditor::onMosaicSelected(int strength) {
    m_toolbar->checkEntry(Editor::Mosaic);
    m_tools.selectMosaic(strength);
}

void TindraEditor::onClickEraser() {
    m_toolbar->checkEntry(Editor::Eraser);
    m_tools.selectEraser();
}

void TindraEditor::onClickMenuBtn() {
    if (const Editor *editor = m_view->editor())
        m_toolbar->checkEntry(editor->shapeType());
    else // the mark of the last capture's tool would stay
        m_toolbar->checkEntry(std::nullopt);
}

void TindraEditor::onClickHelp() {
    recordUsage("capt_1_052");
    openPage(tr("https://www.norvane.example/tindra/help"));
}

void TindraEditor::onClickReadme() {
    const QDir programFolder(QCoreApplication::applicationDirPath());
    QDesktopServices::openUrl(QUrl::fromLocalFile(programFolder.filePath(QStringLiteral("readme.txt"))));
}

void TindraEditor::onClickFAQ() {
    openPage(tr("https://www.norvane.example/tindra/faq"));
}

void TindraEditor::onClickCustomerServices() {
    openPage(tr("https://www.norvane.example/support"));
}

void TindraEditor::onClickBrindlePage() {
    openPage(tr("https://www.brindle.example"));
}

void TindraEditor::onClickNorvanePage() {
    openPage(tr("https://www.norvane.example"));
}

void TindraEditor::onClickAbout(bool modal) {
    auto *dialog = new AboutDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &AboutDialog::fileMemoryModeChanged, this,
            [](bool memory) { PostMessageToTindra(CaptureMessage::LogTargetToggled, memory, 0); });
    if (modal) {
        dialog->exec();
        return;
    }
    dialog->show();
    bringToFront(dialog);
}

void TindraEditor::onClickPrint() {
    m_history->printCurrentImage();
}

void TindraEditor::onClickUpdate() {
    ManagementProgramOffer::makeIfMissed(this);
    PostMessageToTindra(CaptureMessage::OnlineUpdate, 0, 0);
}

void TindraEditor::onClickPreference(int page, bool modal) {
    m_preferences->open(page, modal);
}

void TindraEditor::onClickClose() {
    m_exit->requestExit();
    close();
}

bool TindraEditor::hasLeft() const {
    return m_exit->hasLeft();
}

void TindraEditor::kill() {
    m_exit->requestKill();
    close();
}

void TindraEditor::onClickHistoryShow() {
    m_history->show();
    // One pixel makes the layout settle.
    resize(width() + 1, height() + 1);
}

void TindraEditor::onClickHistoryHide() {
    m_history->hide();
    resize(width() - 1, height() - 1);
    emit clickHistoryHide();
}

void TindraEditor::OnSystemSessionOut(QSessionManager &) {
    finishOpenItem();
    m_exit->endSession();
}

void TindraEditor::closeEvent(QCloseEvent *event) {
    if (!TindraPreferences::instance()->GetBool(TindraPreferences::TrayMode, true))
        m_exit->requestExit();
    event->ignore();
    finishOpenItem();
    if (m_exit->isRequested()) {
        m_exit->start();
        return;
    }
    trace(2, QStringLiteral("closeEvent"), "hide");
    hide();
    PostMessageToTindra(CaptureMessage::HiddenByClose, 0, 0);
}

void TindraEditor::showEvent(QShowEvent *event) {
    // The style sheet for the screen's scale, and with it the least size, comes with the first of these
    // events; the window is not seen before they are over.
    if (m_centresAtShow)
        centre();
    m_shows->onShow();
    QMainWindow::showEvent(event);
    bringToFront(this);
    PostMessageToTindra(CaptureMessage::Shown, 0, 0);
    m_banners->show();
}

void TindraEditor::hideEvent(QHideEvent *event) {
    QMainWindow::hideEvent(event);
    postHidden();
    m_banners->hide();
}

void TindraEditor::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    m_banners->placeAtBottom();
    m_banners->layOutToolbar();
}

void TindraEditor::moveEvent(QMoveEvent *event) {
    QMainWindow::moveEvent(event);
    emit m_view->moveMainWindow();
}
