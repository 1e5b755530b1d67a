#pragma once

#include "canvas/editor.h"

#include <QImage>

class QWidget;

/// A capture with known pixels, and a mouse that acts on a view of it as the window system would.
namespace capture {

/// Pixels that differ from their neighbours, so that a shift by one shows; opaque.
QImage picture(const QSize &size);
/// Puts the picture into the image store under that key and names it in the editor.
void load(Editor &editor, const QString &key, const QImage &picture);

/// Starts from default settings and an empty image store.
void resetWorld();

/// Events at a point of a view's viewport, delivered as spontaneous input is.
class Mouse {
public:
    explicit Mouse(QWidget *viewport) : m_viewport(viewport) {}
    void press(const QPoint &pos, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void move(const QPoint &pos, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void release(const QPoint &pos, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Press, moves through the points, release at the last.
    void drag(const QVector<QPoint> &points, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(const QPoint &pos, Qt::MouseButton button = Qt::LeftButton);

private:
    void send(QEvent::Type type, const QPoint &pos, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

    QWidget *m_viewport;
    Qt::MouseButtons m_buttons;
};

} // namespace capture
