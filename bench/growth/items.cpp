#include "canvasactions.h"
#include "growth.h"
#include "sceneitems.h"

namespace {

constexpr QSize CaptureSize(3840, 2160);
/// Few small ones for what it costs anyway, and several great ones for how it grows.
constexpr int Counts[] = {0, 10, 100, 1000, 2500, 5000, 10000};
constexpr int Runs = 7;
/// Of what takes long to make undone.
constexpr int FewRuns = 3;
constexpr int MovesAtOnce = 10;
/// To the right of all items.
constexpr QPoint Free(1100, 300);

/// The processor time of single actions on a capture with items.
class Items {
public:
    Items() {
        loadCapture(m_capture, QStringLiteral("capture"), CaptureSize);
        m_canvas.show(m_capture);
    }
    void addUpTo(int count) {
        m_canvas.view().setEditor(nullptr); // which would paint each of them
        addItems(m_capture, count - m_capture.items().size());
        m_canvas.show(m_capture);
    }

    double move(Editor::ShapeType tool);
    double eraserMove() { return m_actions.eraserMove(Free); }
    double erasing();
    double press() { return m_actions.press(Free); }
    double undoing();
    double redoing();
    double resetting();
    double drawingAfterUndo();
    double flattening() { return m_actions.flattening(); }
    double repainting();

private:
    /// One more item, away from all others.
    void draw() {
        m_capture.setShape(Editor::Line);
        m_canvas.send(QEvent::MouseButtonPress, Free);
        m_canvas.send(QEvent::MouseMove, Free + QPoint(40, 40));
        m_canvas.send(QEvent::MouseButtonRelease, Free + QPoint(40, 40));
    }

    Editor m_capture;
    CanvasBench m_canvas;
    CanvasActions m_actions{m_capture, m_canvas, Runs};
};

double Items::move(Editor::ShapeType tool) {
    m_capture.setShape(tool);
    m_canvas.send(QEvent::MouseButtonPress, Free);
    // The first one makes ready for those that follow.
    m_canvas.untilPainted([&] { m_canvas.send(QEvent::MouseMove, Free + QPoint(5, 5)); });
    int moves = 0;
    const double cost = m_actions.fastestOf([&] {
        const double begin = processorMs();
        for (int i = 0; i < MovesAtOnce; ++i) {
            ++moves;
            m_canvas.untilPainted(
                [&] { m_canvas.send(QEvent::MouseMove, Free + QPoint(20 + 3 * moves, 20 + 2 * moves)); });
        }
        return (processorMs() - begin) / MovesAtOnce;
    });
    m_canvas.send(QEvent::MouseButtonRelease, Free + QPoint(3 * moves, 2 * moves));
    m_capture.undo();
    settle(CanvasBench::SmoothAfter);
    return cost;
}

double Items::erasing() {
    const double cost = m_actions.fastestOf([&] {
        draw();
        m_capture.setShape(Editor::Eraser);
        settle(20);
        return m_canvas.untilPainted([&] {
            m_canvas.send(QEvent::MouseButtonPress, Free + QPoint(20, 20));
            m_canvas.send(QEvent::MouseButtonRelease, Free + QPoint(20, 20));
        });
    });
    draw(); // what was erased is gone for good
    m_capture.undo();
    settle(CanvasBench::SmoothAfter);
    return cost;
}

double Items::undoing() {
    draw();
    settle(20);
    const double cost = m_actions.undoing();
    m_capture.undo();
    settle(20);
    return cost;
}

double Items::redoing() {
    draw();
    const double cost = m_actions.redoing();
    m_capture.undo();
    settle(20);
    return cost;
}

double Items::resetting() {
    const int count = m_capture.items().size();
    return m_actions.fastestOf([&] {
        const double cost = m_canvas.untilPainted([&] { m_capture.reset(); });
        for (int i = 0; i < count; ++i)
            m_capture.redo();
        settle(CanvasBench::SmoothAfter);
        return cost;
    });
}

double Items::drawingAfterUndo() {
    const int undone = m_capture.items().size() / 2;
    return fastestOf(FewRuns, [&] {
        for (int i = 0; i < undone; ++i)
            m_capture.undo();
        settle(20);
        m_capture.setShape(Editor::Line);
        m_canvas.send(QEvent::MouseButtonPress, Free);
        m_canvas.send(QEvent::MouseMove, Free + QPoint(40, 40));
        const double cost = costOf([&] { m_canvas.send(QEvent::MouseButtonRelease, Free + QPoint(40, 40)); });
        m_capture.undo();
        addUpTo(m_capture.items().size() + undone);
        return cost;
    });
}

double Items::repainting() {
    return m_actions.fastestOf([&] {
        m_canvas.view().setEditor(nullptr);
        const double cost = m_canvas.untilPainted([&] { m_canvas.view().setEditor(&m_capture); });
        settle(20);
        return cost;
    });
}

} // namespace

void growthWithItems() {
    Curve pen(QStringLiteral("move of the pen beside items"), figures::Flat);
    Curve figure(QStringLiteral("move of a rectangle beside items"), figures::Flat);
    Curve press(QStringLiteral("press and release beside items"), figures::Linear);
    Curve eraser(QStringLiteral("move of the eraser beside items"), figures::Flat);
    Curve erasing(QStringLiteral("erasing an item beside others"), figures::Linear);
    Curve undo(QStringLiteral("undo of an item beside others"), figures::Linear);
    Curve redo(QStringLiteral("redo of an item beside others"), figures::Linear);
    Curve reset(QStringLiteral("reset of items"), figures::Linear);
    Curve after(QStringLiteral("drawing once half of the items is undone"), figures::Linear);
    Curve flatten(QStringLiteral("flatten with items"), figures::Linear);
    Curve repaint(QStringLiteral("full repaint with items"), figures::Linear);
    Items items;
    for (const int count : Counts) {
        items.addUpTo(count);
        pen.add(count, items.move(Editor::Pen));
        figure.add(count, items.move(Editor::Rectangle));
        press.add(count, items.press());
        eraser.add(count, items.eraserMove());
        erasing.add(count, items.erasing());
        undo.add(count, items.undoing());
        redo.add(count, items.redoing());
        repaint.add(count, items.repainting());
        if (count == 0)
            continue;
        flatten.add(count, items.flattening());
        reset.add(count, items.resetting());
        after.add(count, items.drawingAfterUndo());
    }
    for (const Curve *curve :
         {&pen, &figure, &press, &eraser, &erasing, &undo, &redo, &reset, &after, &flatten, &repaint})
        curve->print();
}
