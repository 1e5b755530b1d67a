#include "canvas/itemtable.h"

#include "canvas/items/drawingarrowitem.h"
#include "canvas/items/drawingcircleitem.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawinghighlighteritem.h"
#include "canvas/items/drawinglineitem.h"
#include "canvas/items/drawingmosaicitem.h"
#include "canvas/items/drawingpenitem.h"
#include "canvas/items/drawingrectitem.h"
#include "canvas/items/drawingspeechballoonitem.h"
#include "canvas/items/drawingtextitem.h"

template <class Item> Editor::NewItem ItemTable::drawing(Editor &editor, const QRectF &sceneRect) {
    auto *item = new Item(sceneRect, &editor);
    editor.connectDrawing(item);
    return {item, item};
}

Editor::NewItem ItemTable::mosaic(Editor &editor, const QRectF &sceneRect) {
    auto *item = new DrawingMosaicItem(sceneRect, &editor, editor.flatten(true, true));
    editor.connectDrawing(item);
    return {item, item};
}

Editor::NewItem ItemTable::text(Editor &editor, const QRectF &sceneRect) {
    auto *item = new DrawingTextItem(sceneRect, &editor);
    editor.connectText(item);
    return {item, item, item, nullptr};
}

Editor::NewItem ItemTable::crop(Editor &editor, const QRectF &sceneRect) {
    auto *item = new DrawingCropItem(sceneRect, editor.cropRect(), &editor);
    editor.connectCrop(item);
    item->setImageRect(editor.imageRect());
    return {item, item, nullptr, item};
}

ItemTable::Maker ItemTable::maker(Editor::ShapeType shape) {
    struct Row {
        Editor::ShapeType shape;
        Maker make;
    };
    static constexpr Row Rows[] = {
        {Editor::Pen, &drawing<DrawingPenItem>},
        {Editor::Highlighter, &drawing<DrawingHighlighterItem>},
        {Editor::Line, &drawing<DrawingLineItem>},
        {Editor::Arrow, &drawing<DrawingArrowItem>},
        {Editor::Rectangle, &drawing<DrawingRectItem>},
        {Editor::Circle, &drawing<DrawingCircleItem>},
        {Editor::SpeechBalloon, &drawing<DrawingSpeechBalloonItem>},
        {Editor::Mosaic, &mosaic},
        {Editor::Text, &text},
        {Editor::Crop, &crop},
    };
    for (const Row &row : Rows) {
        if (row.shape == shape)
            return row.make;
    }
    return nullptr;
}
