#pragma once

#include "canvas/editor.h"

#include <QGraphicsView>
#include <QPointer>

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

private:
    QPointer<Editor> m_editor;
};
