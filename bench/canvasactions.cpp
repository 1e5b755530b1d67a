#include "canvasactions.h"

namespace {

constexpr int MovesAtOnce = 10;
/// Milliseconds after which a change is painted and nothing of it is left to do.
constexpr int Painted = 20;

} // namespace

double CanvasActions::fastestOf(const std::function<double()> &measure) const {
    return ::fastestOf(m_runs, measure);
}

double CanvasActions::eraserMove(const QPoint &pos) {
    m_capture.setShape(Editor::Eraser);
    m_canvas.send(QEvent::MouseButtonPress, pos);
    const double cost = fastestOf([&] {
        return costOf([&] {
                   for (int i = 0; i < MovesAtOnce; ++i)
                       m_canvas.send(QEvent::MouseMove, pos + QPoint(i, i));
               }) /
               MovesAtOnce;
    });
    m_canvas.send(QEvent::MouseButtonRelease, pos);
    return cost;
}

double CanvasActions::press(const QPoint &pos) {
    return fastestOf([&] { return onePress(pos); });
}

double CanvasActions::onePress(const QPoint &pos) {
    m_capture.setShape(Editor::Pen);
    const double cost = costOf([&] {
        m_canvas.send(QEvent::MouseButtonPress, pos);
        m_canvas.send(QEvent::MouseButtonRelease, pos);
    });
    settle(Painted);
    return cost;
}

double CanvasActions::undoing() {
    return fastestOf([&] {
        const double cost = m_canvas.untilPainted([&] { m_capture.undo(); });
        m_capture.redo();
        settle(Painted);
        return cost;
    });
}

double CanvasActions::redoing() {
    return fastestOf([&] {
        m_capture.undo();
        settle(Painted);
        return m_canvas.untilPainted([&] { m_capture.redo(); });
    });
}

double CanvasActions::flattening() {
    return fastestOf([&] { return costOf([&] { m_capture.flatten(true, false); }); });
}
