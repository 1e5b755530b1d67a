// usage: pen-drag
//
// Draws with the pen over a 3840x2160 capture in the maximised main window, on a display of that size, and
// tells the processor time (user and system) that this process spends per mouse move. The mouse is the X
// server's own, moved through XTest; each move is waited for until it has reached the canvas and its paint is
// done, so that none is swallowed by the compression of motion events.

#include "app/tindraeditor.h"
#include "canvas/editorview.h"
#include "figures.h"
#include "ipc/imageprovider.h"
#include "measuring.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScreen>

#include <cmath>

// Last, because Xlib defines words such as Bool and None.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#undef None
#undef Bool

namespace {

constexpr QSize CaptureSize(3840, 2160);
constexpr qint64 GiveUpMs = 10000;
constexpr double BoundMs = 0.6;
constexpr double BoundRatio = 1.25;
constexpr int Portion = 1000; // moves at either end of the long drag that are compared
constexpr double StepPixels = 7;
constexpr double Turn = 0.021; // radians from step to step, more or less
constexpr int Border = 40;     // the drag keeps away from the canvas' border by this

/// The X server's mouse.
class Mouse {
public:
    Mouse() : m_display(XOpenDisplay(nullptr)) {
        if (!m_display)
            qFatal("no X display");
    }
    ~Mouse() { XCloseDisplay(m_display); }
    Mouse(const Mouse &) = delete;
    Mouse &operator=(const Mouse &) = delete;

    void move(const QPoint &pos) const {
        XTestFakeMotionEvent(m_display, -1, pos.x(), pos.y(), CurrentTime);
        XFlush(m_display);
    }
    void button(bool down) const {
        XTestFakeButtonEvent(m_display, 1, down ? True : False, CurrentTime);
        XFlush(m_display);
    }

private:
    Display *m_display;
};

/// A smooth way over the canvas that never leaves it and hardly ever stands still.
class Path {
public:
    explicit Path(const QRect &area) : m_area(area), m_pos(area.center()) {}

    QPoint next() {
        m_angle += Turn * (1 + std::sin(m_angle / 3));
        QPointF to = m_pos + StepPixels * QPointF(std::cos(m_angle), std::sin(m_angle));
        to.rx() = qBound<double>(m_area.left(), to.x() + 0.4, m_area.right());
        to.ry() = qBound<double>(m_area.top(), to.y(), m_area.bottom());
        if (to.x() >= m_area.right())
            to.rx() = m_area.left();
        m_pos = to;
        return m_pos.toPoint();
    }

private:
    QRect m_area;
    QPointF m_pos;
    double m_angle = 0;
};

template <class Condition> void waitUntil(Condition condition, const char *what) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        if (clock.elapsed() > GiveUpMs)
            qFatal("waited in vain for %s", what);
    }
}

struct Result {
    double perMove;
    double firstPortion;
    double lastPortion;
};

Result drag(const Mouse &mouse, const EventCounter &witness, const QRect &area, int count) {
    Path path(area);
    mouse.move(path.next());
    settle(300);
    mouse.button(true);
    settle(300);
    const double begin = processorMs();
    double firstEnd = begin, lastBegin = begin;
    for (int i = 0; i < count; ++i) {
        if (i == Portion)
            firstEnd = processorMs();
        if (i == count - Portion)
            lastBegin = processorMs();
        const int moves = witness.moves, paints = witness.paints;
        mouse.move(path.next());
        waitUntil([&] { return witness.moves > moves; }, "a mouse move");
        waitUntil([&] { return witness.paints > paints; }, "a paint");
    }
    const double end = processorMs();
    mouse.button(false);
    settle(300);
    return {(end - begin) / count, (firstEnd - begin) / Portion, (end - lastBegin) / Portion};
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    TindraPreferences::instance()->Init();
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, Editor::Pen);
    TindraEditor window;
    const QString key = QStringLiteral("pen-drag");
    ImageProvider::instance()->insert(key, QPixmap::fromImage(patternedCapture(CaptureSize)));
    window.AddNewPixmap(key, QPoint(), true);
    window.showMaximized();
    settle(1500);

    auto *view = window.findChild<EditorView *>();
    if (!view || !view->editor())
        qFatal("no canvas");
    if (window.screen()->size() != CaptureSize || !window.isMaximized() || !view->transform().isIdentity())
        qFatal("not maximised on a display of 3840x2160 at 100 %%");
    EventCounter witness;
    view->viewport()->installEventFilter(&witness);
    const QRect area(view->viewport()->mapToGlobal(QPoint()), view->viewport()->size());
    const QRect inside = area.adjusted(Border, Border, -Border, -Border);
    const Mouse mouse;
    const auto print = [](int moves, const Result &result) {
        figures::print(QStringLiteral("pen drag of %1 moves: processor time per move").arg(moves),
                       result.perMove, "ms", BoundMs);
    };
    for (const int moves : {250, 1500})
        print(moves, drag(mouse, witness, inside, moves));
    const Result longDrag = drag(mouse, witness, inside, 10000);
    print(10000, longDrag);
    figures::print(QStringLiteral("pen drag of 10000 moves: last thousand to first"),
                   longDrag.lastPortion / longDrag.firstPortion, "x", BoundRatio);
    return 0;
}
