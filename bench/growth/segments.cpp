#include "canvasactions.h"
#include "growth.h"
#include "sceneitems.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr QSize CaptureSize(3840, 2160);
constexpr int Counts[] = {10, 100, 1000, 10000, 25000, 50000, 100000};
constexpr int Runs = 15;
/// For what can be measured once with each.
constexpr int Strokes = 3;
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
    /// What the stroke takes once somebody has asked what of it lies where.
    double bytesOnceAsked() const { return m_bytesOnceAsked; }
    /// In the middle of the stroke, where it is not. Whoever asks first what lies there has the stroke's
    /// index made, so there is no second measurement of that with one stroke.
    double firstPress() const { return m_firstPress; }
    double press() { return m_actions.press(Area.center()); }
    double eraserMove() { return m_actions.eraserMove(Area.center()); }
    double undoing() { return m_actions.undoing(); }
    double redoing() { return m_actions.redoing(); }
    double flattening() { return m_actions.flattening(); }

private:
    Editor m_capture;
    CanvasBench m_canvas;
    CanvasActions m_actions{m_capture, m_canvas, Runs};
    double m_bytes = 0;
    double m_bytesOnceAsked = 0;
    double m_firstPress = 0;
    double m_perMove = 0;
    double m_release = 0;
};

Stroke::Stroke(int segments) {
    // Its own name, since a capture takes its picture with it.
    loadCapture(m_capture, QStringLiteral("capture %1").arg(quintptr(this)), CaptureSize);
    m_canvas.show(m_capture);
    m_capture.setShape(Editor::Pen);
    const double before = allocatedBytes();
    m_canvas.send(QEvent::MouseButtonPress, placeOf(0));
    int at = 0;
    while (at < segments - 1)
        m_canvas.send(QEvent::MouseMove, placeOf(++at));
    settle(CanvasBench::SmoothAfter);
    m_bytes = allocatedBytes() - before;
    m_perMove = m_actions.fastestOf([&] {
        return costOf([&] {
                   for (int i = 0; i < MovesAtOnce; ++i)
                       m_canvas.untilPainted([&] { m_canvas.send(QEvent::MouseMove, placeOf(++at)); });
               }) /
               MovesAtOnce;
    });
    const QPoint end = placeOf(++at);
    m_release = m_canvas.untilPainted([&] { m_canvas.send(QEvent::MouseButtonRelease, end); });
    settle(CanvasBench::SmoothAfter);
    m_firstPress = m_actions.onePress(Area.center());
    m_bytesOnceAsked = allocatedBytes() - before;
}

} // namespace

void growthWithSegments() {
    Curve move(QStringLiteral("move of the pen after segments"), figures::Flat);
    Curve release(QStringLiteral("release of the pen after segments"), figures::Flat);
    Curve eraser(QStringLiteral("move of the eraser amid the segments of a stroke"), figures::Flat);
    Curve firstPress(QStringLiteral("first press amid the segments of a stroke"), figures::Linear);
    Curve press(QStringLiteral("each further press amid the segments of a stroke"), figures::Flat);
    Curve undo(QStringLiteral("undo of a stroke of segments"), figures::Flat);
    Curve redo(QStringLiteral("redo of a stroke of segments"), figures::Linear);
    Curve flatten(QStringLiteral("flatten of a stroke of segments"), figures::Linear);
    Curve memory(QStringLiteral("memory of a stroke of segments, untouched"), figures::Linear, "KiB");
    Curve indexed(QStringLiteral("memory of a stroke of segments, once pressed over"), figures::Linear,
                  "KiB");
    for (const int count : Counts) {
        Stroke stroke(count);
        double fastestFirstPress = stroke.firstPress(), fastestRelease = stroke.release();
        for (int i = 1; i < Strokes; ++i) {
            const Stroke another(count);
            fastestFirstPress = std::min(fastestFirstPress, another.firstPress());
            fastestRelease = std::min(fastestRelease, another.release());
        }
        firstPress.add(count, fastestFirstPress);
        move.add(count, stroke.perMove());
        release.add(count, fastestRelease);
        undo.add(count, stroke.undoing());
        redo.add(count, stroke.redoing());
        flatten.add(count, stroke.flattening());
        eraser.add(count, stroke.eraserMove());
        press.add(count, stroke.press());
        memory.add(count, stroke.bytes() / 1024);
        indexed.add(count, stroke.bytesOnceAsked() / 1024);
    }
    for (const Curve *curve :
         {&move, &release, &firstPress, &press, &eraser, &undo, &redo, &flatten, &memory, &indexed})
        curve->print();
}
