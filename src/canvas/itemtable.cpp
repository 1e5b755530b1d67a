#include "canvas/itemtable.h"

#include "canvas/items/drawinghighlighteritem.h"
#include "canvas/items/drawingpenitem.h"

template <class Item> Editor::NewItem ItemTable::drawing(Editor &editor, const QRectF &sceneRect) {
    auto *item = new Item(sceneRect, &editor);
    editor.connectDrawing(item);
    return {item, item};
}

ItemTable::Maker ItemTable::maker(Editor::ShapeType shape) {
    struct Row {
        Editor::ShapeType shape;
        Maker make;
    };
    static constexpr Row Rows[] = {
        {Editor::Pen, &drawing<DrawingPenItem>},
        {Editor::Highlighter, &drawing<DrawingHighlighterItem>},
    };
    for (const Row &row : Rows) {
        if (row.shape == shape)
            return row.make;
    }
    return nullptr;
}
