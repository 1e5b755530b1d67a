#include "canvasbench.h"
#include "growth.h"
#include "sceneitems.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr QSize CaptureSize(3840, 2160);
constexpr int Counts[] = {10, 100, 1000, 10000, 100000};
constexpr int Runs = 15;
constexpr int MovesAtOnce = 10;
/// The stroke runs through this part of the picture in waves, and never comes to its middle.
constexpr QRect Area(40, 40, 1200, 900);
constexpr int Ring = 150; // at least so far away from the middle

/// Bytes that the process has from the allocator.
double allocatedBytes() {
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

QPoint placeOf(int segment) {
    const double angle = segment * 0.05, radius = Ring + 100 + 150 * (1 + std::sin(segment * 0.003)) / 2;
    return Area.center() + QPointF(radius * std::cos(angle), radius * std::sin(angle)).toPoint();
}

class Stroke {
public:
    /// Draws it. Sent to the view, since a view that comes later ends a drag.
    explicit Stroke(int segments);

    double bytes() const { return m_bytes; }
    double perMove() const { return m_perMove; }
    double release() const { return m_release; }
    double undoing() {
        return fastestOf([&] {
            const double cost = m_canvas.untilPainted([&] { m_capture.undo(); });
            m_capture.redo();
            settle(20);
            return cost;
        });
    }
    double redoing() {
        return fastestOf([&] {
            m_capture.undo();
            settle(20);
            return m_canvas.untilPainted([&] { m_capture.redo(); });
        });
    }
    double flattening() {
        return fastestOf([&] { return costOf([&] { m_capture.flatten(true, false); }); });
    }
    /// In the middle of the stroke, where it is not.
    double eraserMove();
    double press();

private:
    static double fastestOf(const std::function<double()> &measure) {
        QVector<double> costs;
        for (int run = 0; run < Runs; ++run)
            costs.append(measure());
        return *std::min_element(costs.begin(), costs.end());
    }
    template <class Action> static double costOf(Action action) {
        const double begin = processorMs();
        action();
        return processorMs() - begin;
    }

    Editor m_capture;
    CanvasBench m_canvas;
    double m_bytes = 0;
    double m_perMove = 0;
    double m_release = 0;
};

Stroke::Stroke(int segments) {
    loadCapture(m_capture, QStringLiteral("capture"), CaptureSize);
    m_canvas.show(m_capture);
    m_capture.setShape(Editor::Pen);
    const double before = allocatedBytes();
    m_canvas.send(QEvent::MouseButtonPress, placeOf(0));
    int at = 0;
    while (at < segments - 1)
        m_canvas.send(QEvent::MouseMove, placeOf(++at));
    settle(CanvasBench::SmoothAfter);
    m_bytes = allocatedBytes() - before;
    m_perMove = fastestOf([&] {
        return costOf([&] {
                   for (int i = 0; i < MovesAtOnce; ++i)
                       m_canvas.untilPainted([&] { m_canvas.send(QEvent::MouseMove, placeOf(++at)); });
               }) /
               MovesAtOnce;
    });
    const QPoint end = placeOf(++at);
    m_release = m_canvas.untilPainted([&] { m_canvas.send(QEvent::MouseButtonRelease, end); });
    settle(CanvasBench::SmoothAfter);
}

double Stroke::eraserMove() {
    m_capture.setShape(Editor::Eraser);
    const QPoint middle = Area.center();
    m_canvas.send(QEvent::MouseButtonPress, middle);
    const double cost = fastestOf([&] {
        return costOf([&] {
                   for (int i = 0; i < MovesAtOnce; ++i)
                       m_canvas.send(QEvent::MouseMove, middle + QPoint(i, i));
               }) /
               MovesAtOnce;
    });
    m_canvas.send(QEvent::MouseButtonRelease, middle);
    return cost;
}

double Stroke::press() {
    m_capture.setShape(Editor::Pen);
    return fastestOf([&] {
        const double cost = costOf([&] {
            m_canvas.send(QEvent::MouseButtonPress, Area.center());
            m_canvas.send(QEvent::MouseButtonRelease, Area.center());
        });
        settle(20);
        return cost;
    });
}

} // namespace

void growthWithSegments() {
    Curve move(QStringLiteral("move of the pen after segments"), figures::Flat);
    Curve release(QStringLiteral("release of the pen after segments"), figures::Flat);
    Curve eraser(QStringLiteral("move of the eraser amid the segments of a stroke"), figures::Flat);
    Curve press(QStringLiteral("press amid the segments of a stroke"), figures::Flat);
    Curve undo(QStringLiteral("undo of a stroke of segments"), figures::Flat);
    Curve redo(QStringLiteral("redo of a stroke of segments"), figures::Linear);
    Curve flatten(QStringLiteral("flatten of a stroke of segments"), figures::Linear);
    Curve memory(QStringLiteral("memory of a stroke of segments"), figures::Linear, "KiB");
    for (const int count : Counts) {
        Stroke stroke(count);
        move.add(count, stroke.perMove());
        release.add(count, stroke.release());
        undo.add(count, stroke.undoing());
        redo.add(count, stroke.redoing());
        flatten.add(count, stroke.flattening());
        eraser.add(count, stroke.eraserMove());
        press.add(count, stroke.press());
        memory.add(count, stroke.bytes() / 1024);
    }
    for (const Curve *curve : {&move, &release, &eraser, &press, &undo, &redo, &flatten, &memory})
        curve->print();
}
