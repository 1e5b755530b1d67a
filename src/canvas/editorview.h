#pragma once

#include "canvas/editor.h"
#include "canvas/smoothbackground.h"
#include "canvas/zoomtable.h"

#include <QGraphicsView>
#include <QPointer>
#include <QVector>

class CanvasMenu;
class DebounceFunc;
class ItemButton;

/// The canvas widget: shows one `Editor` at a time, paints its image as background, keeps zoom and scroll
/// position per capture, sets the tool cursors.
///
/// Borrows the `Editor`. View coordinates are device pixels; at 100 % one is one image pixel.
class EditorView : public QGraphicsView {
    Q_OBJECT
public:
    explicit EditorView(QWidget *parent = nullptr);
    ~EditorView() override;

    /// Shows another capture, or none.
    void setEditor(Editor *editor);
    Editor *editor() const { return m_editor; }

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
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private slots:
    void onUpdateImageSize();
    void onCreateCropItem();
    void onStrokeExtended(const DrawingFreehandItem *item, int firstSegment);

private:
    void connectEditor();
    void connectMenu();
    void setZoomStep(int step);
    void applyZoom();
    void placeFloatingWidgets();
    void placeHistoryButton();
    /// Sizes in device pixels, from those at 96 per inch.
    int scaled(int size) const;
    void refreshBackground();
    void forwardWheel(const QWheelEvent &event, const QPoint &angleDelta, Qt::KeyboardModifiers modifiers);

    ItemButton *m_historyShow;
    QPointer<Editor> m_editor;
    QVector<QMetaObject::Connection> m_editorConnections;
    double m_zoom = 1.0;
    int m_zoomStep = ZoomStep::Normal;
    DebounceFunc *m_backgroundDebounce = nullptr;
    SmoothBackground m_background;
    CanvasMenu *m_contextMenu;
};
