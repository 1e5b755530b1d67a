#pragma once

#include "canvas/editor.h"

/// Which tool builds which item: one row each. A tool without a row draws nothing.
struct ItemTable {
    using Maker = Editor::NewItem (*)(Editor &editor, const QRectF &sceneRect);

    /// Null for a tool without an item.
    static Maker maker(Editor::ShapeType shape);

private:
    /// The plain tools: the item takes the visible rectangle and its parent.
    template <class Item> static Editor::NewItem drawing(Editor &editor, const QRectF &sceneRect);
    /// Also takes a picture of all that is there, without the crop.
    static Editor::NewItem mosaic(Editor &editor, const QRectF &sceneRect);
    /// Stays open after the press.
    static Editor::NewItem text(Editor &editor, const QRectF &sceneRect);
    /// Also takes the crop of now, where the frame begins.
    static Editor::NewItem crop(Editor &editor, const QRectF &sceneRect);
};
