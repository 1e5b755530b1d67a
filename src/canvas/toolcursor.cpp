#include "canvas/toolcursor.h"

#include <QPixmap>

namespace {

/// Hot spot in the middle of the picture.
QCursor pictureCursor(const QString &path) {
    return QCursor(QPixmap(path), -1, -1);
}

} // namespace

QCursor toolCursor(ShapeTypes::ShapeType shape) {
    switch (shape) {
    case ShapeTypes::Eraser:
        return pictureCursor(QStringLiteral(":/res/EditorView/point_eraser.svg"));
    case ShapeTypes::Pen:
    case ShapeTypes::Line:
    case ShapeTypes::Arrow:
        return pictureCursor(QStringLiteral(":/res/EditorView/point_pen.svg"));
    case ShapeTypes::Highlighter:
        return pictureCursor(QStringLiteral(":/res/EditorView/point_highlighter.svg"));
    case ShapeTypes::Rectangle:
    case ShapeTypes::Circle:
    case ShapeTypes::SpeechBalloon:
    case ShapeTypes::Mosaic:
        return Qt::CrossCursor;
    case ShapeTypes::Text:
    case ShapeTypes::TextFinished:
        return Qt::IBeamCursor;
    case ShapeTypes::TextEditing:
    case ShapeTypes::Crop:
        break;
    }
    return Qt::ArrowCursor;
}
