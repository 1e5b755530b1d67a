#pragma once

#include "canvas/editorview.h"
#include "measuring.h"

#include <QEvent>

#include <functional>

/// A view on the screen without the window around it, driven by events.
class CanvasBench {
public:
    /// Milliseconds after which a reduced picture has its smooth copy, with a margin.
    static constexpr int SmoothAfter = 250;

    CanvasBench();
    ~CanvasBench();

    EditorView &view() { return m_view; }
    void show(Editor &editor);
    /// A mouse event at a place of the view.
    void send(QEvent::Type type, const QPoint &pos, Qt::MouseButton held = Qt::LeftButton);
    /// Processor time of the action and the next paint.
    double untilPainted(const std::function<void()> &action);

private:
    EditorView m_view;
    EventCounter m_counter;
};

/// Puts a patterned picture of that size into the store and has the editor show it.
void loadCapture(Editor &editor, const QString &key, const QSize &size);
