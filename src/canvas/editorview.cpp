#include "canvas/editorview.h"

#include "canvas/canvasgestures.h"
#include "canvas/canvasmenu.h"
#include "canvas/canvasviewport.h"
#include "canvas/flagguard.h"
#include "canvas/floatingcopy.h"
#include "canvas/floatingcroppopup.h"
#include "canvas/floatingtextpopup.h"
#include "canvas/imagetoolwidget.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawingfigureitem.h"
#include "canvas/items/drawingfreehanditem.h"
#include "canvas/items/drawingtextitem.h"
#include "canvas/toolcursor.h"
#include "canvas/viewplacement.h"
#include "popups/croppopup.h"
#include "popups/itembutton.h"
#include "ui/uistyler.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGestureEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace {

/// What a wheel event says on its main axis. Under X11 the toolkit turns the wheel sideways while Alt is
/// held, with Ctrl as well, and elsewhere it may not.
int wheelDelta(const QWheelEvent &event) {
    const QPoint delta = event.angleDelta();
    return qAbs(delta.x()) > qAbs(delta.y()) ? delta.x() : delta.y();
}

} // namespace

EditorView::EditorView(QWidget *parent, bool withAiTools)
    : QGraphicsView(parent), m_viewport(new CanvasViewport), m_historyShow(new ItemButton(this)),
      m_imageTool(new ImageToolWidget(this)), m_contextMenu(new CanvasMenu(withAiTools, this)),
      m_gestures(new CanvasGestures(this)), m_textPopup(std::make_unique<FloatingTextPopup>(this)),
      m_cropPopup(std::make_unique<FloatingCropPopup>(this)) {
    setViewport(m_viewport);
    // What is to be painted is decided here and not by the base class.
    setViewportUpdateMode(NoViewportUpdate);
    m_historyShow->setObjectName(QStringLiteral("historyShow_"));
    // The viewport is the youngest child, which lies above the others.
    m_historyShow->raise();
    m_imageTool->raise();
    m_historyShow->setToolTip(tr("Show recent captures"));
    m_historyShow->setAccessibleName(m_historyShow->toolTip());
    m_historyShow->hide();
    connect(m_historyShow, &ItemButton::clicked, this, &EditorView::onClickHistoryShow);
    m_imageTool->setObjectName(QStringLiteral("imageTool_"));
    m_imageTool->hide();
    connect(m_imageTool, &ImageToolWidget::zoomIn, this, &EditorView::onZoomIn);
    connect(m_imageTool, &ImageToolWidget::zoomOut, this, &EditorView::onZoomOut);
    connect(m_imageTool, &ImageToolWidget::zoomReset, this, &EditorView::onZoomReset);
    m_contextMenu->setObjectName(QStringLiteral("contextMenu_"));
    connectMenu();
    connectGestures();
    addFloatingCopyAction();
    UIStyler::setScaleCallback(this, [this](double) { placeFloatingWidgets(); });
    connect(this, &EditorView::cropped, m_cropPopup->popup(), &CropPopup::cropped);
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

void EditorView::connectGestures() {
    connect(m_gestures, &CanvasGestures::active, this, [this](bool active) {
        if (m_editor)
            m_editor->setGestureActive(active);
    });
    connect(m_gestures, &CanvasGestures::panned, this, &EditorView::onPanned);
    connect(m_gestures, &CanvasGestures::pinched, this, &EditorView::onPinched);
}

void EditorView::addFloatingCopyAction() {
    auto *action = new QAction(this);
    action->setShortcut(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_F);
    connect(action, &QAction::triggered, this, [this] {
        if (m_editor)
            FloatingCopy::open(m_editor, this);
    });
    addAction(action);
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
        // Nor will the end of a gesture be told to this one.
        m_editor->setGestureActive(false);
        // The popup of an open item is this view's.
        m_editor->finishCurrentItem(false);
        m_editor->setSavedCenter(mapToScene(viewport()->rect().center()).toPoint());
    }
    for (const QMetaObject::Connection &connection : qAsConst(m_editorConnections))
        disconnect(connection);
    m_editorConnections.clear();
    onFinishCropItem();
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
        restoreCenter(editor->savedCenter());
    } else {
        placeImageTool();
    }
    updateGeometry();
    viewport()->update();
}

void EditorView::restoreCenter(const QPoint &center) {
    // What was saved stands at a pixel, the one in the middle or the one before. The base class centres on
    // the exact middle and cuts what is left of a pixel, so captures would creep from one swap to the next.
    const QRect area = viewport()->rect();
    const QPointF fromPixel = QPointF(area.width(), area.height()) / 2 - area.center() + QPointF(0.5, 0.5);
    centerOn(center + fromPixel / m_zoom);
}

void EditorView::connectEditor() {
    Editor *editor = m_editor;
    m_editorConnections = {
        connect(editor, &Editor::changed, this, &EditorView::onSceneChanged),
        connect(editor, &Editor::changed, this, &EditorView::onEditorChanged),
        connect(editor, &Editor::changedShape, this, &EditorView::onChangeShape),
        connect(editor, &Editor::changeSceneRect, this, &EditorView::onChangeSceneRect),
        connect(editor, &Editor::createTextItem, this, &EditorView::onCreateTextItem),
        connect(editor, &Editor::moveTextItem, this, &EditorView::onMoveTextItem),
        connect(editor, &Editor::finishTextItem, this, &EditorView::onFinishTextItem),
        connect(editor, &Editor::createCropItem, this, &EditorView::onCreateCropItem),
        connect(editor, &Editor::moveCropItem, this, &EditorView::onMoveCropItem),
        connect(editor, &Editor::finishCropItem, this, &EditorView::onFinishCropItem),
        connect(editor, &Editor::updateImageSize, this, &EditorView::onUpdateImageSize),
        connect(editor, &Editor::strokeExtended, this, &EditorView::onStrokeExtended),
        connect(editor, &Editor::figureChanged, this, &EditorView::onFigureChanged),
        connect(editor, &QObject::destroyed, m_imageTool, &QWidget::hide),
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
    // Makes the base class forget the cursor that it saw before an item's own, such as the crop frame's: it
    // would bring that back over the new tool's as soon as the mouse leaves the item.
    setDragMode(ScrollHandDrag);
    setDragMode(NoDrag);
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
    placeImageTool();
}

void EditorView::onCreateTextItem(DrawingTextItem *item) {
    m_textPopup->open(item);
}

void EditorView::onMoveTextItem(DrawingTextItem *) {
    m_textPopup->place();
}

void EditorView::onFinishTextItem() {
    m_textPopup->finish();
}

void EditorView::onCreateCropItem(DrawingCropItem *item) {
    if (!m_editor)
        return;
    const QRect image = m_editor->imageRect();
    setSceneRect(QRectF(image));
    m_cropItem = item;
    m_shownCropFrame = item ? item->frame() : QRect();
    m_cropPopup->open(item);
    if (width() >= image.width() && height() >= image.height())
        return;
    const double fit = std::max(0.1, std::min(static_cast<double>(height()) / image.height(),
                                              static_cast<double>(width()) / image.width()));
    if (fit < 1.0)
        setZoomStep(zoomStepToFit(fit));
}

void EditorView::onMoveCropItem(DrawingCropItem *) {
    m_cropPopup->place();
    if (m_cropItem)
        updateCropFrame();
}

void EditorView::onFinishCropItem() {
    m_cropPopup->finish();
    m_cropItem = nullptr;
    viewport()->update();
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
    if (!m_editor) {
        event->ignore();
        return;
    }
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
    } else if (event->modifiers() & Qt::ShiftModifier) {
        forwardWheel(*event, QPoint(delta, 0), Qt::AltModifier);
    } else if (event->modifiers() & Qt::AltModifier) {
        forwardWheel(*event, QPoint(0, delta), event->modifiers());
    } else {
        QGraphicsView::wheelEvent(event);
    }
    m_textPopup->place();
    m_cropPopup->place();
    m_textPopup->hide();
}

void EditorView::forwardWheel(const QWheelEvent &event, const QPoint &angleDelta,
                              Qt::KeyboardModifiers modifiers) {
    QWheelEvent turned(event.position(), event.globalPosition(), QPoint(), angleDelta, event.buttons(),
                       modifiers, event.phase(), event.inverted());
    QGraphicsView::wheelEvent(&turned);
}

bool EditorView::event(QEvent *event) {
    if (event->type() == QEvent::Gesture) {
        m_gestures->handle(static_cast<QGestureEvent *>(event), m_zoom);
        return true;
    }
    // The base class has the viewport grab pans too; accepting means that this widget gets them.
    if (event->type() == QEvent::GestureOverride)
        event->accept();
    return QGraphicsView::event(event);
}

void EditorView::onPanned(const QPointF &delta) {
    const auto scroll = [this](const QPoint &angleDelta, Qt::KeyboardModifier modifier) {
        QWheelEvent wheel(QPointF(), viewport()->mapToGlobal(QPoint()), QPoint(), angleDelta, Qt::LeftButton,
                          modifier, Qt::NoScrollPhase, false);
        wheelEvent(&wheel);
    };
    scroll(QPoint(static_cast<int>(delta.x()), 0), Qt::ShiftModifier);
    scroll(QPoint(0, static_cast<int>(delta.y())), Qt::AltModifier);
}

void EditorView::onPinched(double zoom) {
    if (!m_editor)
        return;
    m_zoom = zoom;
    // The scale's whole part, although steps count otherwise: the scale that this step stands for is what a
    // capture comes back with.
    m_editor->setZoomStep(static_cast<int>(zoom));
    applyZoom();
}

void EditorView::resizeEvent(QResizeEvent *event) {
    QGraphicsView::resizeEvent(event);
    applyZoom();
}

void EditorView::showEvent(QShowEvent *event) {
    QGraphicsView::showEvent(event);
    m_textPopup->setShown(true);
    m_cropPopup->setShown(true);
}

void EditorView::hideEvent(QHideEvent *event) {
    QGraphicsView::hideEvent(event);
    m_textPopup->setShown(false);
    m_cropPopup->setShown(false);
}

void EditorView::contextMenuEvent(QContextMenuEvent *event) {
    m_contextMenu->setEnabled(m_editor);
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
    m_textPopup->hide();
    placeFloatingWidgets();
}

void EditorView::onEmptyEditor(bool isEmpty) {
    // There is nothing to draw on, so no tool's cursor either.
    if (isEmpty)
        viewport()->unsetCursor();
}

void EditorView::placeFloatingWidgets() {
    m_textPopup->place();
    m_cropPopup->place();
    placeImageTool();
    placeHistoryButton();
}

void EditorView::placeImageTool() {
    if (!m_editor) {
        m_imageTool->hide();
        return;
    }
    m_imageTool->setImageSize(m_editor->visibleRect().size());
    m_imageTool->setPercent(shownPercent(m_zoom));
    m_imageTool->adjustSize();
    m_imageTool->move(ViewPlacement::imageTool(size(), m_imageTool->size(), widgetScale(this)));
    m_imageTool->show();
}

void EditorView::placeHistoryButton() {
    if (!m_historyShow->isVisible())
        return;
    const int bar = verticalScrollBar()->isVisible() ? verticalScrollBar()->width() : 0;
    m_historyShow->move(ViewPlacement::historyButton(size(), m_historyShow->size(), bar, widgetScale(this)));
}
