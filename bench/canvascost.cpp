// usage: canvas-cost [MOTION]
//
// With a word, only the moves whose names hold it: for a profiler.
// The canvas alone, 1920x1080 on a display of that size, with a capture of 3840x2160: the processor time
// (user and system, of all threads) that a mouse move costs with each tool, the eraser over nothing, an open
// text and an open crop included, beside 0, 100 and 1,000 finished items; that of a zoom step, a scroll step
// and the selection of another capture until it is painted; and the time from the press of the mosaic to a
// preview that is right, there and on a scroll capture.

#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawingtextitem.h"
#include "canvas/pixelate.h"
#include "canvasbench.h"
#include "figures.h"
#include "measuring.h"
#include "preferences/tindrapreferences.h"
#include "sceneitems.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

const QSize CaptureSize(3840, 2160);
const QSize ScrollCaptureSize(1920, 30000);
constexpr int Moves = 150;
/// So many moves are measured at once, and the median is taken of these measurements.
constexpr int MovesAtOnce = 10;
constexpr int Runs = 15;
/// Where the measured motions begin: to the right of all items.
constexpr QPoint DragStart(1100, 300);
constexpr int Half = 9; // the zoom step of 50.5 %
constexpr int Full = 20;
constexpr double MoveBoundMs = 0.6;
constexpr double GrowthBound = 1.25;
constexpr double FrameBoundMs = 16;
constexpr double PreviewBoundMs = 100;

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
    double untilPainted(const std::function<void()> &action) { return m_canvas.untilPainted(action); }
    void send(QEvent::Type type, const QPoint &pos, Qt::MouseButton held = Qt::LeftButton) {
        m_canvas.send(type, pos, held);
    }
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
    Editor m_capture, m_other;
    CanvasBench m_canvas;
    EditorView &m_view = m_canvas.view();
};

Bench::Bench(const QString &only) : m_only(only) {
    TindraPreferences::instance()->Init();
    loadCapture(m_capture, QStringLiteral("capture"), CaptureSize);
    loadCapture(m_other, QStringLiteral("other"), CaptureSize);
    m_canvas.show(m_capture);
}

void Bench::show(int zoomStep) {
    m_capture.setZoomStep(zoomStep);
    m_canvas.show(m_capture);
}

Cost Bench::costOf(const std::function<void(const QPoint &offset)> &move) {
    settle(CanvasBench::SmoothAfter);
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
    settle(50);
    m_capture.undo();
    settle(CanvasBench::SmoothAfter);
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
    settle(CanvasBench::SmoothAfter);
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
    settle(CanvasBench::SmoothAfter);
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
        addItems(m_capture, count - present);
        present = count;
        settle(CanvasBench::SmoothAfter);
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
        figures::print(name, cost.at(2).median, "ms", MoveBoundMs);
    }
    const auto growth = [&](const char *what, std::size_t first, std::size_t end) {
        double none = 0, thousand = 0;
        for (std::size_t motion = first; motion < end; ++motion) {
            none += costs[motion].first().fastest;
            thousand += costs[motion].last().fastest;
        }
        figures::print(QStringLiteral("%1 at %2 %: beside 1,000 items to beside none")
                           .arg(QLatin1String(what))
                           .arg(percent),
                       thousand / none, "x", GrowthBound);
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
            settle(CanvasBench::SmoothAfter);
            scrolls.append(untilPainted([&] {
                QScrollBar *bar = m_view.verticalScrollBar();
                bar->setValue(bar->value() + (run % 2 ? -17 : 17));
            }));
            selections.append(untilPainted([&] { m_view.setEditor(&m_other); }));
            settle(CanvasBench::SmoothAfter);
            zooms.append(untilPainted([&] { m_view.onZoomOut(); }));
            m_view.onZoomIn();
        }
        figures::print(QStringLiteral("zoom step from %1 to painted").arg(scale), median(zooms), "ms",
                       FrameBoundMs);
        figures::print(QStringLiteral("scroll step at %1 to painted").arg(scale), median(scrolls), "ms",
                       FrameBoundMs);
        figures::print(QStringLiteral("another capture at %1 to painted").arg(scale), median(selections),
                       "ms", FrameBoundMs);
    }
}

void Bench::measurePreview(const QSize &size) {
    Editor capture;
    loadCapture(capture, QStringLiteral("preview"), size);
    m_view.setEditor(&capture);
    capture.setShape(Editor::Mosaic);
    const QRect looked(105, 105, 40, 30);
    QImage right = capture.flatten(false, true).toImage();
    pixelate(right, QRect(0, 0, right.width(), qMin(right.height(), 3000)), 6);
    right = right.copy(looked);
    QVector<double> times;
    for (int run = 0; run < Runs; ++run) {
        settle(CanvasBench::SmoothAfter);
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
    figures::print(QStringLiteral("mosaic on %1x%2: press to preview (fastest %3)")
                       .arg(size.width())
                       .arg(size.height())
                       .arg(fastest, 0, 'f', 1),
                   median(times), "ms", PreviewBoundMs);
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
