#include "sceneitems.h"

#include <QCoreApplication>
#include <QGraphicsSceneMouseEvent>

namespace {

constexpr Editor::ShapeType Tools[] = {Editor::Pen,          Editor::Highlighter, Editor::Line,
                                       Editor::Arrow,        Editor::Rectangle,   Editor::Circle,
                                       Editor::SpeechBalloon};

} // namespace

void sendToScene(Editor &editor, QEvent::Type type, const QPoint &pos) {
    QGraphicsSceneMouseEvent event(type);
    event.setScenePos(pos);
    event.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    event.setButtons(type == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
    QCoreApplication::sendEvent(&editor, &event);
}

void addItems(Editor &editor, int count) {
    const int present = editor.items().size();
    for (int i = present; i < present + count; ++i) {
        editor.setShape(Tools[i % int(std::size(Tools))]);
        const QPoint from(20 + i * 37 % 700, 20 + i * 53 % 900);
        sendToScene(editor, QEvent::GraphicsSceneMousePress, from);
        sendToScene(editor, QEvent::GraphicsSceneMouseMove, from + QPoint(30 + i % 40, 20));
        sendToScene(editor, QEvent::GraphicsSceneMouseMove, from + QPoint(60, 10 + i % 50));
        sendToScene(editor, QEvent::GraphicsSceneMouseRelease, from + QPoint(60, 10 + i % 50));
    }
}
