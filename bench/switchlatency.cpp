// usage: switch-latency EDITOR WIDTH HEIGHT RUNS
//
// Walks down the recent captures of a running editor with the keyboard and tells how long each press of Down
// takes, as the user sees it: until the window on the X server shows the marker colour of the next capture,
// less decoding the same bytes in this process, each pair taken in one run. Every capture is a file, which is
// decoded when it is shown.

#include "runningeditor.h"

#include <QGuiApplication>
#include <QThread>

#include <vector>

namespace {

constexpr int WarmUpRuns = 3;
constexpr int RestMs = 400; // the thumbnail of a capture that was just added, the picture scaled anew
constexpr double BoundMs = 60;

} // namespace

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 5)
        qFatal("usage: switch-latency EDITOR WIDTH HEIGHT RUNS");
    const QSize size(arguments[2].toInt(), arguments[3].toInt());
    const int presses = WarmUpRuns + arguments[4].toInt();

    const RunningEditor editor(arguments[1]);
    ScreenObserver screen;
    std::vector<MarkedCapture> captures;
    for (int i = 0; i <= presses; ++i) {
        captures.emplace_back(size, i);
        const QString line = RunningEditor::captureLine(captures.back().toFile());
        screen.msUntilShown(captures.back().marker, [&] { RunningEditor::send(line); });
        QThread::msleep(RestMs);
    }

    OverDecoding figure;
    for (int i = presses - 1; i >= 0; --i) {
        const MarkedCapture &capture = captures[std::size_t(i)];
        const double decode = capture.decodeMs();
        const double shown = screen.msUntilShown(capture.marker, [&] { screen.pressKey("Down"); });
        QThread::msleep(RestMs);
        if (i < presses - WarmUpRuns)
            figure.add(decode, shown);
    }
    figure.print(QStringLiteral("%1x%2: Down to picture").arg(size.width()).arg(size.height()), BoundMs);
    return 0;
}
