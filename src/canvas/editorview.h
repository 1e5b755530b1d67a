#pragma once

#include "canvas/editor.h"
#include "canvas/smoothbackground.h"
#include "canvas/viewframe.h"
#include "canvas/zoomtable.h"

#include <QGraphicsView>
#include <QPointer>
#include <QVector>

#include <memory>
#include <optional>

class CanvasGestures;
class CanvasMenu;
class CanvasViewport;
class DebounceFunc;
class FloatingCropPopup;
class FloatingTextPopup;
class ImageToolWidget;
class ItemButton;
class Omittable;
class QMenu;

/// The canvas widget: shows one `Editor` at a time, paints its image as background, keeps zoom and scroll
/// position per capture, sets the tool cursors.
///
/// Keeps a picture of what it shows. A stroke that grows is added to that picture segment by segment; any
/// other change marks a part of it stale, to be painted anew from the scene. Either way the picture is, pixel
/// for pixel, what painting everything anew would give.
///
/// Borrows the `Editor`. View coordinates are device pixels; at 100 % one is one image pixel.
class EditorView : public QGraphicsView {
    Q_OBJECT
public:
    /// The context menu has an entry for the AI tools only `withAiTools`.
    explicit EditorView(QWidget *parent = nullptr, bool withAiTools = false);
    ~EditorView() override;

    /// Shows another capture, or none.
    void setEditor(Editor *editor);
    Editor *editor() const { return m_editor; }

    /// The menus of the tools' panels for the context menu; not owned.
    void setAiToolsMenu(QMenu *menu);
    void setFigureMenu(QMenu *menu);
    void setHighlighterMenu(QMenu *menu);
    void setLineWidthMenu(QMenu *menu);
    void setMosaicMenu(QMenu *menu);
    void setPenMenu(QMenu *menu);

public slots:
    void onZoomIn();
    void onZoomOut();
    void onZoomReset();
    void onChangeShape(Editor::ShapeType shapeType);
    void onEditorChanged();
    void onChangeSceneRect();
    void onClickHistoryShow();
    void onClickHistoryHide();
    void onMoveMainWindow();
    void onEmptyEditor(bool isEmpty);

signals:
    void canUndo(bool can);
    void canRedo(bool can);
    void changeShape(Editor::ShapeType shapeType);
    void clickHistoryShow();
    void contextMenuText();
    void contextMenuCrop();
    void contextMenuEraser();
    void contextMenuReset();
    void contextMenuPrint();
    void moveMainWindow();
    void cropped(bool cropped);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void onSceneChanged(const QList<QRectF> &areas);
    void onUpdateImageSize();
    void onCreateTextItem(DrawingTextItem *item);
    void onMoveTextItem(DrawingTextItem *item);
    void onFinishTextItem();
    void onCreateCropItem(DrawingCropItem *item);
    void onMoveCropItem(DrawingCropItem *item);
    void onFinishCropItem();
    void onStrokeExtended(const DrawingFreehandItem *item, int firstSegment);
    void onFigureChanged(DrawingFigureItem *item, const QRectF &area);
    void onPanned(const QPointF &delta);
    void onPinched(double zoom);

private:
    void connectEditor();
    void connectMenu();
    void connectGestures();
    void addFloatingCopyAction();
    void setZoomStep(int step);
    void restoreCenter(const QPoint &center);
    void applyZoom();
    void placeFloatingWidgets();
    void placeImageTool();
    void placeHistoryButton();
    void scheduleRefresh();
    void refreshBackground();
    /// Whether the capture has another picture, under whatever key, than the frame was painted from.
    bool takeImageChange();
    void repaintAll();
    void hearOfChanges();
    void adaptFrame();
    /// Brings that part of the frame to the screen, and the crop's frame over it.
    void paintExposed(const QRegion &region);
    /// What of the image the crop's frame is to be right in when that part of the viewport is painted.
    QRect exposedToCrop(const QRect &rect) const;
    void renderFrame(const QRegion &stale);
    /// Paints the scene's parts into `image`, a picture of the viewport: that region, or everything where
    /// there is no painting a part, which it tells.
    bool renderParts(QImage &image, const QRegion &stale);
    /// Brings the frame's underlay, the picture without that item, up to date; nothing of it is known in
    /// `unknown` if there is none yet.
    void refreshUnderlay(QObject *object, Omittable *item, const QRegion &unknown);
    /// The open text if nothing lies over it.
    DrawingTextItem *textOnTop() const;
    void paintTextOnTop(DrawingTextItem *text, const QRegion &stale);
    void paintOverFrame(QGraphicsItem *item, QWidget *widget);
    /// Whether the toolkit would paint the item at all, were everything painted.
    bool isReached(const QGraphicsItem &item) const;
    QRegion withReachingItems(QRegion region) const;
    void paintScene(QImage &target, const QRegion &region);
    QRect deviceRect(const QRectF &sceneArea) const;
    /// Has the screen follow the frame of the open crop.
    void updateCropFrame();
    void forwardWheel(const QWheelEvent &event, const QPoint &angleDelta, Qt::KeyboardModifiers modifiers);

    CanvasViewport *m_viewport;
    ItemButton *m_historyShow;
    ImageToolWidget *m_imageTool;
    QPointer<Editor> m_editor;
    QVector<QMetaObject::Connection> m_editorConnections;
    double m_zoom = 1.0;
    int m_zoomStep = ZoomStep::Normal;
    DebounceFunc *m_backgroundDebounce = nullptr;
    SmoothBackground m_background;
    ViewFrame m_frame;
    std::optional<qint64> m_frameImage; ///< `QPixmap::cacheKey` of what the frame was painted from
    QPointer<QObject> m_overlaid;       ///< the item that the frame's underlay goes without
    QRegion m_rendered;                 ///< what of the frame is being painted, while it is
    CanvasMenu *m_contextMenu;
    CanvasGestures *m_gestures;
    std::unique_ptr<FloatingTextPopup> m_textPopup;
    std::unique_ptr<FloatingCropPopup> m_cropPopup;
    QPointer<DrawingCropItem> m_cropItem; ///< the open crop
    QRect m_shownCropFrame;               ///< its frame as the screen has it, or will after the next paint
};
