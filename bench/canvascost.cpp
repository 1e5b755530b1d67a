// usage: canvas-cost [MOTION]
//
// With a word, only the moves whose names hold it: for a profiler.
// The canvas alone, 1920x1080 on a display of that size, with a capture of 3840x2160: the processor time
// (user and system, of all threads) that a mouse move costs with each tool, the eraser over nothing, an open
// text and an open crop included, beside 0, 100 and 1,000 finished items; that of a zoom step, a scroll step
// and the selection of another capture until it is painted; and the time from the press of the mosaic to a
// preview that is right, there and on a scroll capture.

#include "canvas/editorview.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawingtextitem.h"
#include "canvas/pixelate.h"
#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QScrollBar>
#include <QThread>

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const QSize ViewSize(1920, 1080);
const QSize CaptureSize(3840, 2160);
const QSize ScrollCaptureSize(1920, 30000);
constexpr int Moves = 150;
/// So many moves are measured at once, and the median is taken of these measurements.
constexpr int MovesAtOnce = 10;
constexpr int Runs = 15;
/// Where the measured motions begin: to the right of all items.
constexpr QPoint DragStart(1100, 300);
/// Milliseconds after which a reduced picture has its smooth copy, with a margin.
constexpr int SmoothAfter = 250;
constexpr int Half = 9; // the zoom step of 50.5 %
constexpr int Full = 20;
constexpr double MoveTargetMs = 0.6;
constexpr double GrowthTarget = 1.25;
constexpr double FrameTargetMs = 16;
constexpr double PreviewTargetMs = 100;

double processorMs() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1e3 + time.tv_nsec / 1e6;
}

double median(QVector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void print(const QString &name, double measured, const char *unit, double target) {
    std::printf("%-58s %8.3f %-4s %8.2f %s\n", qPrintable(name), measured, unit, target,
                measured <= target ? "met" : "missed");
    std::fflush(stdout);
}

QPixmap picture(const QSize &size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = qRgb(x / 16, y / 9, (x ^ y) & 255);
    }
    return QPixmap::fromImage(image);
}

class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

struct Tool {
    Editor::ShapeType shape;
    const char *name;
};

constexpr Tool Tools[] = {
    {Editor::Pen, "pen"},
    {Editor::Highlighter, "highlighter"},
    {Editor::Line, "line"},
    {Editor::Arrow, "arrow"},
    {Editor::Rectangle, "rectangle"},
    {Editor::Circle, "circle"},
    {Editor::SpeechBalloon, "balloon"},
    {Editor::Mosaic, "mosaic"},
};

/// The cost of a move. What is least disturbed by other work on the machine is for comparisons.
struct Cost {
    double median = 0;
    double fastest = 0;
};

/// What the mouse does with a tool, and the cost of a move.
struct Motion {
    QString name;
    std::function<Cost()> perMove;
};

/// A view on the screen with its captures, driven by events.
class Bench {
public:
    explicit Bench(const QString &only);
    void measure();

private:
    void load(Editor &editor, const char *key, const QSize &size);
    void rest(int milliseconds);
    /// Until the view has painted once more.
    void waitForPaint();
    template <class Action> double untilPainted(Action action);
    void send(QEvent::Type type, const QPoint &pos, Qt::MouseButton held = Qt::LeftButton);
    void addItems(int count);
    void show(int zoomStep);
    std::vector<Motion> motions();
    Cost costOf(const std::function<void(const QPoint &offset)> &move);
    Cost perMove(Editor::ShapeType tool);
    Cost perEraserMove();
    DrawingTextItem *openText();
    Cost perHover(bool overText);
    Cost perMoveOfText();
    Cost perMoveOfCrop();
    void measureMoves(int zoomStep);
    void measureSteps();
    void measurePreview(const QSize &size);

    QString m_only; ///< a part of the names of the motions to measure
    EditorView m_view;
    PaintCounter m_counter;
    Editor m_capture, m_other;
};

Bench::Bench(const QString &only) : m_only(only) {
    TindraPreferences::instance()->Init();
    load(m_capture, "capture", CaptureSize);
    load(m_other, "other", CaptureSize);
    m_view.setFrameShape(QFrame::NoFrame);
    m_view.setWindowFlag(Qt::FramelessWindowHint);
    m_view.resize(ViewSize);
    m_view.setEditor(&m_capture);
    m_view.show();
    m_view.viewport()->installEventFilter(&m_counter);
    rest(500);
}

void Bench::load(Editor &editor, const char *key, const QSize &size) {
    ImageProvider::instance()->insert(QLatin1String(key), picture(size));
    editor.setImageKey(QLatin1String(key));
}

void Bench::rest(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds) {
        QCoreApplication::processEvents();
        QThread::msleep(1);
    }
}

void Bench::waitForPaint() {
    const int paints = m_counter.paints;
    while (m_counter.paints == paints)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

template <class Action> double Bench::untilPainted(Action action) {
    const double begin = processorMs();
    action();
    waitForPaint();
    return processorMs() - begin;
}

void Bench::send(QEvent::Type type, const QPoint &pos, Qt::MouseButton held) {
    const bool move = type == QEvent::MouseMove;
    const bool up = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, pos, m_view.viewport()->mapToGlobal(pos), move ? Qt::NoButton : Qt::LeftButton,
                      up ? Qt::NoButton : held, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view.viewport(), &event);
}

/// On the left of the view, where no measured drag comes; of all tools by turns.
void Bench::addItems(int count) {
    for (int i = 0; i < count; ++i) {
        m_capture.setShape(Tools[i % 7].shape);
        const QPoint from(20 + i * 37 % 700, 20 + i * 53 % 900);
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, from + QPoint(30 + i % 40, 20));
        send(QEvent::MouseMove, from + QPoint(60, 10 + i % 50));
        send(QEvent::MouseButtonRelease, from + QPoint(60, 10 + i % 50));
    }
}

void Bench::show(int zoomStep) {
    m_capture.setZoomStep(zoomStep);
    m_view.setEditor(nullptr);
    m_view.setEditor(&m_capture);
    rest(SmoothAfter);
}

Cost Bench::costOf(const std::function<void(const QPoint &offset)> &move) {
    rest(SmoothAfter);
    QVector<double> costs;
    for (int i = 0; i < Moves; i += MovesAtOnce) {
        const double begin = processorMs();
        for (int j = i + 1; j <= i + MovesAtOnce; ++j)
            move(QPoint(20 + 3 * j, 20 + 2 * j));
        costs.append((processorMs() - begin) / MovesAtOnce);
    }
    return {median(costs), *std::min_element(costs.begin(), costs.end())};
}

Cost Bench::perMove(Editor::ShapeType tool) {
    m_capture.setShape(tool);
    send(QEvent::MouseButtonPress, DragStart);
    const Cost cost = costOf(
        [this](const QPoint &offset) { untilPainted([&] { send(QEvent::MouseMove, DragStart + offset); }); });
    send(QEvent::MouseButtonRelease, DragStart + QPoint(20 + 3 * Moves, 20 + 2 * Moves));
    rest(50);
    m_capture.undo();
    rest(SmoothAfter);
    return cost;
}

/// Over nothing, so that there is nothing to paint either.
Cost Bench::perEraserMove() {
    m_capture.setShape(Editor::Eraser);
    send(QEvent::MouseButtonPress, DragStart);
    const Cost cost = costOf([this](const QPoint &offset) {
        send(QEvent::MouseMove, DragStart + offset);
        QCoreApplication::processEvents();
    });
    send(QEvent::MouseButtonRelease, DragStart);
    return cost;
}

DrawingTextItem *Bench::openText() {
    m_capture.setShape(Editor::Text);
    send(QEvent::MouseButtonPress, DragStart);
    send(QEvent::MouseButtonRelease, DragStart);
    auto *text = dynamic_cast<DrawingTextItem *>(m_capture.currentItem());
    if (!text)
        qFatal("no text");
    return text;
}

Cost Bench::perHover(bool overText) {
    const QRect box = m_view.mapFromScene(openText()->sceneBoundingRect()).boundingRect();
    const Cost cost = costOf([&](const QPoint &offset) {
        const QPoint inBox = box.topLeft() + QPoint(offset.x() % box.width(), offset.y() % box.height());
        send(QEvent::MouseMove, overText ? inBox : DragStart + offset, Qt::NoButton);
        QCoreApplication::processEvents();
    });
    m_capture.finishCurrentItem(false);
    rest(SmoothAfter);
    return cost;
}

Cost Bench::perMoveOfText() {
    // The border moves the box.
    const QPoint border = m_view.mapFromScene(openText()->sceneBoundingRect().topLeft()) + QPoint(1, 1);
    send(QEvent::MouseButtonPress, border);
    const Cost cost = costOf(
        [&](const QPoint &offset) { untilPainted([&] { send(QEvent::MouseMove, border + offset); }); });
    send(QEvent::MouseButtonRelease, border);
    m_capture.finishCurrentItem(false);
    rest(SmoothAfter);
    return cost;
}

/// At the scale at which all of the picture is in sight, which is what the view takes.
Cost Bench::perMoveOfCrop() {
    const int zoomStep = m_capture.zoomStep();
    m_capture.setShape(Editor::Crop);
    m_capture.startCrop();
    const auto *crop = dynamic_cast<DrawingCropItem *>(m_capture.currentItem());
    if (!crop)
        qFatal("no crop");
    const QPoint corner = m_view.mapFromScene(crop->frame().bottomRight());
    send(QEvent::MouseButtonPress, corner);
    const Cost cost = costOf(
        [&](const QPoint &offset) { untilPainted([&] { send(QEvent::MouseMove, corner - offset); }); });
    send(QEvent::MouseButtonRelease, corner);
    m_capture.finishCurrentItem(false);
    show(zoomStep);
    return cost;
}

std::vector<Motion> Bench::motions() {
    std::vector<Motion> result;
    for (const Tool &tool : Tools)
        result.push_back({QLatin1String(tool.name), [this, shape = tool.shape] { return perMove(shape); }});
    result.push_back({QStringLiteral("eraser over nothing"), [this] { return perEraserMove(); }});
    result.push_back({QStringLiteral("mouse beside an open text"), [this] { return perHover(false); }});
    result.push_back({QStringLiteral("mouse over an open text"), [this] { return perHover(true); }});
    result.push_back({QStringLiteral("box of an open text"), [this] { return perMoveOfText(); }});
    result.push_back({QStringLiteral("frame of a crop"), [this] { return perMoveOfCrop(); }});
    result.erase(std::remove_if(result.begin(), result.end(),
                                [this](const Motion &motion) { return !motion.name.contains(m_only); }),
                 result.end());
    return result;
}

void Bench::measureMoves(int zoomStep) {
    show(zoomStep);
    constexpr int Counts[] = {0, 100, 1000};
    const std::vector<Motion> all = motions();
    std::vector<QVector<Cost>> costs(all.size());
    int present = 0;
    for (const int count : Counts) {
        addItems(count - present);
        present = count;
        rest(SmoothAfter);
        for (std::size_t motion = 0; motion < all.size(); ++motion)
            costs[motion].append(all[motion].perMove());
    }
    m_capture.reset();
    const int percent = zoomStep == Full ? 100 : 50;
    for (std::size_t motion = 0; motion < all.size(); ++motion) {
        const QVector<Cost> &cost = costs[motion];
        const QString name = QStringLiteral("%1 at %2 %: move beside 0, 100 (%3, %4), 1,000 items")
                                 .arg(all[motion].name)
                                 .arg(percent)
                                 .arg(cost.at(0).median, 0, 'f', 3)
                                 .arg(cost.at(1).median, 0, 'f', 3);
        print(name, cost.at(2).median, "ms", MoveTargetMs);
    }
    const auto growth = [&](const char *what, std::size_t first, std::size_t end) {
        double none = 0, thousand = 0;
        for (std::size_t motion = first; motion < end; ++motion) {
            none += costs[motion].first().fastest;
            thousand += costs[motion].last().fastest;
        }
        print(QStringLiteral("%1 at %2 %: beside 1,000 items to beside none")
                  .arg(QLatin1String(what))
                  .arg(percent),
              thousand / none, "x", GrowthTarget);
    };
    if (!m_only.isEmpty())
        return;
    growth("all drawing tools", 0, std::size(Tools));
    growth("eraser, text and crop", std::size(Tools), all.size());
}

void Bench::measureSteps() {
    for (const int zoomStep : {Full, Half}) {
        const QString scale = zoomStep == Full ? QStringLiteral("100 %") : QStringLiteral("50 %");
        QVector<double> zooms, scrolls, selections;
        m_capture.setZoomStep(zoomStep);
        m_other.setZoomStep(zoomStep);
        for (int run = 0; run < Runs; ++run) {
            m_view.setEditor(&m_capture);
            rest(SmoothAfter);
            scrolls.append(untilPainted([&] {
                QScrollBar *bar = m_view.verticalScrollBar();
                bar->setValue(bar->value() + (run % 2 ? -17 : 17));
            }));
            selections.append(untilPainted([&] { m_view.setEditor(&m_other); }));
            rest(SmoothAfter);
            zooms.append(untilPainted([&] { m_view.onZoomOut(); }));
            m_view.onZoomIn();
        }
        print(QStringLiteral("zoom step from %1 to painted").arg(scale), median(zooms), "ms", FrameTargetMs);
        print(QStringLiteral("scroll step at %1 to painted").arg(scale), median(scrolls), "ms",
              FrameTargetMs);
        print(QStringLiteral("another capture at %1 to painted").arg(scale), median(selections), "ms",
              FrameTargetMs);
    }
}

void Bench::measurePreview(const QSize &size) {
    Editor capture;
    load(capture, "preview", size);
    m_view.setEditor(&capture);
    capture.setShape(Editor::Mosaic);
    const QRect looked(105, 105, 40, 30);
    QImage right = capture.flatten(false, true).toImage();
    pixelate(right, QRect(0, 0, right.width(), qMin(right.height(), 3000)), 6);
    right = right.copy(looked);
    QVector<double> times;
    for (int run = 0; run < Runs; ++run) {
        rest(SmoothAfter);
        QElapsedTimer clock;
        clock.start();
        send(QEvent::MouseButtonPress, QPoint(100, 100));
        send(QEvent::MouseMove, QPoint(160, 150));
        send(QEvent::MouseMove, QPoint(161, 151));
        while (m_view.viewport()->grab(looked).toImage().convertToFormat(right.format()) != right) {
            QCoreApplication::processEvents();
            if (clock.elapsed() > 10000)
                qFatal("no preview");
        }
        times.append(clock.nsecsElapsed() / 1e6);
        send(QEvent::MouseButtonRelease, QPoint(161, 151));
        capture.undo();
    }
    m_view.setEditor(nullptr);
    const double fastest = *std::min_element(times.begin(), times.end());
    print(QStringLiteral("mosaic on %1x%2: press to preview (fastest %3)")
              .arg(size.width())
              .arg(size.height())
              .arg(fastest, 0, 'f', 1),
          median(times), "ms", PreviewTargetMs);
}

void Bench::measure() {
    measureMoves(Full);
    measureMoves(Half);
    if (m_only.isEmpty()) {
        measureSteps();
        measurePreview(CaptureSize);
        measurePreview(ScrollCaptureSize);
    }
    m_view.setEditor(nullptr);
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    Bench(application.arguments().value(1)).measure();
    return 0;
}
