// usage: capture-latency EDITOR WIDTH HEIGHT file|memory RUNS
//
// Plays the capture process before a running editor and tells how long a picture takes to appear, as the
// user would see it: from the moment at which the command line is sent until the window on the X server shows
// the marker colour of this very capture, less decoding the same bytes in this process, each pair taken in
// one run.

#include "platform/sharedimageblock.h"
#include "runningeditor.h"

#include <QGuiApplication>
#include <QSharedMemory>
#include <QThread>

#include <cstring>
#include <memory>

namespace {

constexpr int WarmUpRuns = 3;
constexpr int RestMs = 150; // thumbnails and the like of a run are not the next one's business
constexpr double BoundMs = 60;

/// Puts the bytes where the capture process leaves them.
std::unique_ptr<QSharedMemory> sharedBlock(const QByteArray &bytes) {
    auto block = std::make_unique<QSharedMemory>();
    block->setNativeKey(platform::sharedImageBlock().nativeKey);
    if (!block->create(bytes.size()))
        qFatal("the shared block cannot be made: %s", qPrintable(block->errorString()));
    std::memcpy(block->data(), bytes.constData(), size_t(bytes.size()));
    return block;
}

} // namespace

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 6)
        qFatal("usage: capture-latency EDITOR WIDTH HEIGHT file|memory RUNS");
    const QSize size(arguments[2].toInt(), arguments[3].toInt());
    const bool byMemory = arguments[4] == QLatin1String("memory");
    const int runs = arguments[5].toInt();

    const RunningEditor editor(arguments[1]);
    ScreenObserver screen;
    OverDecoding figure;
    for (int run = 0; run < WarmUpRuns + runs; ++run) {
        const MarkedCapture capture(size, run);
        const auto block = byMemory ? sharedBlock(capture.bytes) : nullptr;
        const QString key = byMemory ? QStringLiteral("capture-%1").arg(run) : capture.toFile();
        const QString announced =
            byMemory ? QStringLiteral(" /memory %1").arg(capture.bytes.size()) : QString();
        const double decode = capture.decodeMs();
        const QString line = RunningEditor::captureLine(key) + announced;
        const double shown = screen.msUntilShown(capture.marker, [&] { RunningEditor::send(line); });
        QThread::msleep(RestMs);
        if (run >= WarmUpRuns)
            figure.add(decode, shown);
    }
    figure.print(
        QStringLiteral("%1x%2 by %3: line to picture").arg(size.width()).arg(size.height()).arg(arguments[4]),
        BoundMs);
    return 0;
}
