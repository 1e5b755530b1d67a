#include "canvas/editorview.h"

#include "canvas/canvasmenu.h"
#include "canvas/canvasviewport.h"
#include "canvas/flagguard.h"
#include "canvas/items/drawingfreehanditem.h"
#include "canvas/toolcursor.h"
#include "popups/itembutton.h"
#include "ui/uistyler.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace {

/// Distance of the history button from the view's border, at 96 per inch.
constexpr int HistoryButtonMargin = 10;

/// What a wheel event says on whichever axis it says it.
int wheelDelta(const QWheelEvent &event) {
    const QPoint delta = event.angleDelta();
    return delta.y() != 0 ? delta.y() : delta.x();
}

} // namespace

EditorView::EditorView(QWidget *parent)
    : QGraphicsView(parent), m_viewport(new CanvasViewport), m_historyShow(new ItemButton(this)),
      m_contextMenu(new CanvasMenu(false, this)) {
    setViewport(m_viewport);
    // What is to be painted is decided here and not by the base class.
    setViewportUpdateMode(NoViewportUpdate);
    m_historyShow->setObjectName(QStringLiteral("historyShow_"));
    m_historyShow->hide();
    connect(m_historyShow, &ItemButton::clicked, this, &EditorView::onClickHistoryShow);
    m_contextMenu->setObjectName(QStringLiteral("contextMenu_"));
    connectMenu();
    // Zooming around the mouse and the cursor over an open text need to know where the mouse is.
    viewport()->setMouseTracking(true);
}

EditorView::~EditorView() = default;

void EditorView::connectMenu() {
    const auto forward = [this](CanvasMenu::Entry entry, void (EditorView::*signal)()) {
        connect(m_contextMenu->action(entry), &QAction::triggered, this,
                [this, signal] { emit(this->*signal)(); });
    };
    forward(CanvasMenu::Text, &EditorView::contextMenuText);
    forward(CanvasMenu::Crop, &EditorView::contextMenuCrop);
    forward(CanvasMenu::Eraser, &EditorView::contextMenuEraser);
    forward(CanvasMenu::Reset, &EditorView::contextMenuReset);
    forward(CanvasMenu::Print, &EditorView::contextMenuPrint);
}

void EditorView::setAiToolsMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::AiTools, menu);
}

void EditorView::setFigureMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::Figure, menu);
}

void EditorView::setHighlighterMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::Highlighter, menu);
}

void EditorView::setLineWidthMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::LineWidth, menu);
}

void EditorView::setMosaicMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::Mosaic, menu);
}

void EditorView::setPenMenu(QMenu *menu) {
    m_contextMenu->setPanel(CanvasMenu::Pen, menu);
}

void EditorView::setEditor(Editor *editor) {
    if (m_editor) {
        // A capture can arrive in the middle of a drag, and its end will be another scene's.
        m_editor->finishDrag();
        m_editor->setSavedCenter(mapToScene(viewport()->rect().center()).toPoint());
    }
    for (const QMetaObject::Connection &connection : qAsConst(m_editorConnections))
        disconnect(connection);
    m_editorConnections.clear();
    m_background.clear();
    m_frame.clear();
    m_frameImage.reset();
    m_editor = editor;
    setScene(editor);
    if (editor) {
        setSceneRect(QRectF(editor->visibleRect()));
        setZoomStep(editor->zoomStep() < 0 ? ZoomStep::Normal : editor->zoomStep());
        connectEditor();
        editor->restoreLastShape();
        onEditorChanged();
        centerOn(editor->savedCenter());
    }
    updateGeometry();
    viewport()->update();
}

void EditorView::connectEditor() {
    Editor *editor = m_editor;
    m_editorConnections = {
        connect(editor, &Editor::changed, this, &EditorView::onSceneChanged),
        connect(editor, &Editor::changed, this, &EditorView::onEditorChanged),
        connect(editor, &Editor::changedShape, this, &EditorView::onChangeShape),
        connect(editor, &Editor::changeSceneRect, this, &EditorView::onChangeSceneRect),
        // By name: a member pointer wants the argument's class complete.
        connect(editor, SIGNAL(createCropItem(DrawingCropItem *)), this, SLOT(onCreateCropItem())),
        connect(editor, &Editor::updateImageSize, this, &EditorView::onUpdateImageSize),
        connect(editor, &Editor::strokeExtended, this, &EditorView::onStrokeExtended),
    };
}

void EditorView::onEditorChanged() {
    if (!m_editor)
        return;
    const bool open = m_editor->shapeType() == Editor::TextEditing || m_editor->shapeType() == Editor::Crop;
    emit canUndo(!open && m_editor->canUndo());
    emit canRedo(!open && m_editor->canRedo());
}

void EditorView::onChangeShape(Editor::ShapeType shapeType) {
    if (!m_editor)
        return;
    viewport()->setCursor(toolCursor(shapeType));
    emit changeShape(shapeType);
}

void EditorView::onChangeSceneRect() {
    if (!m_editor)
        return;
    setSceneRect(QRectF(m_editor->visibleRect()));
    // The items' clip and the border of the image are others now, even where the view did not move.
    repaintAll();
}

void EditorView::onUpdateImageSize() {
    placeFloatingWidgets();
}

void EditorView::onCreateCropItem() {
    if (!m_editor)
        return;
    const QRect image = m_editor->imageRect();
    setSceneRect(QRectF(image));
    if (width() >= image.width() && height() >= image.height())
        return;
    const double fit = std::max(0.1, std::min(static_cast<double>(height()) / image.height(),
                                              static_cast<double>(width()) / image.width()));
    if (fit < 1.0)
        setZoomStep(zoomStepToFit(fit));
}

void EditorView::onZoomIn() {
    setZoomStep(m_zoomStep + 1);
}

void EditorView::onZoomOut() {
    setZoomStep(m_zoomStep - 1);
}

void EditorView::onZoomReset() {
    setZoomStep(ZoomStep::Normal);
}

void EditorView::setZoomStep(int step) {
    m_zoomStep = qBound(ZoomStep::Lowest, step, ZoomStep::Highest);
    m_zoom = computeZoom(m_zoomStep);
    if (m_editor)
        m_editor->setZoomStep(m_zoomStep);
    applyZoom();
}

void EditorView::applyZoom() {
    if (!m_editor)
        return;
    setTransform(QTransform::fromScale(m_zoom, m_zoom));
    placeFloatingWidgets();
}

void EditorView::wheelEvent(QWheelEvent *event) {
    if (!m_editor)
        return;
    const int delta = wheelDelta(*event);
    if (event->modifiers() & Qt::ControlModifier) {
        const ViewportAnchor anchor = transformationAnchor();
        setTransformationAnchor(AnchorUnderMouse);
        if (delta >= 0)
            onZoomIn();
        else
            onZoomOut();
        setTransformationAnchor(anchor);
        event->accept();
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier)
        forwardWheel(*event, QPoint(delta, 0), Qt::AltModifier);
    else if (event->modifiers() & Qt::AltModifier)
        forwardWheel(*event, QPoint(0, delta), event->modifiers());
    else
        QGraphicsView::wheelEvent(event);
}

void EditorView::forwardWheel(const QWheelEvent &event, const QPoint &angleDelta,
                              Qt::KeyboardModifiers modifiers) {
    QWheelEvent turned(event.position(), event.globalPosition(), QPoint(), angleDelta, event.buttons(),
                       modifiers, event.phase(), event.inverted());
    QGraphicsView::wheelEvent(&turned);
}

void EditorView::resizeEvent(QResizeEvent *event) {
    QGraphicsView::resizeEvent(event);
    applyZoom();
}

void EditorView::contextMenuEvent(QContextMenuEvent *event) {
    m_contextMenu->setEnabled(m_editor);
    m_contextMenu->hideMissingTools();
    // Nobody prints where nobody listens.
    m_contextMenu->action(CanvasMenu::Print)
        ->setVisible(isSignalConnected(QMetaMethod::fromSignal(&EditorView::contextMenuPrint)));
    if (m_editor) {
        // The menu takes the release.
        m_editor->finishDrag();
        m_contextMenu->checkTool(m_editor->shapeType());
    }
    m_contextMenu->exec(event->globalPos());
}

void EditorView::onClickHistoryShow() {
    emit clickHistoryShow();
    m_historyShow->hide();
}

void EditorView::onClickHistoryHide() {
    // The panel has just gone; the button's place is in the wider view.
    QCoreApplication::processEvents();
    m_historyShow->show();
    placeHistoryButton();
}

void EditorView::onMoveMainWindow() {
    static bool placing = false;
    if (placing)
        return;
    const FlagGuard guard(placing);
    placeFloatingWidgets();
}

void EditorView::onEmptyEditor(bool isEmpty) {
    // There is nothing to draw on, so no tool's cursor either.
    if (isEmpty)
        viewport()->unsetCursor();
}

void EditorView::placeFloatingWidgets() {
    placeHistoryButton();
}

void EditorView::placeHistoryButton() {
    if (!m_historyShow->isVisible())
        return;
    const int margin = scaled(HistoryButtonMargin);
    const int bar = verticalScrollBar()->isVisible() ? verticalScrollBar()->width() : 0;
    m_historyShow->move(width() - bar - margin - m_historyShow->width(), margin);
}

int EditorView::scaled(int size) const {
    return static_cast<int>(size * widgetScale(this));
}
