#pragma once

#include "canvas/editor.h"

#include <QEvent>
#include <QImage>

#include <functional>

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

/// Counts how often a widget is brought to the front.
class RaiseCounter : public QObject {
public:
    int raises = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        raises += event->type() == QEvent::ZOrderChange;
        return false;
    }
};

/// Does something as soon as a widget hides.
class HideListener : public QObject {
public:
    bool heard = false;
    explicit HideListener(std::function<void()> answer) : m_answer(std::move(answer)) {}
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Hide) {
            heard = true;
            m_answer();
        }
        return false;
    }

private:
    std::function<void()> m_answer;
};

} // namespace capture
