// usage: switch-latency EDITOR WIDTH HEIGHT RUNS
//
// Walks down the recent captures of a running editor with the keyboard and tells how long each press of Down
// takes, as the user sees it: until the window on the X server shows the marker colour of the next capture.
// Every capture is a file, which is decoded when it is shown. Prints, tab-separated and in milliseconds, the
// median of decoding the same bytes in this process, of the whole way, and of the difference, each pair taken
// in one run.

#include "ipc/ipcclient.h"
#include "measuring.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QThread>

#include <cstdio>

namespace {

constexpr int WarmUpRuns = 3;
constexpr int PollMicroseconds = 300;
constexpr int RestMs = 400; // the thumbnail of a capture that was just added, the picture scaled anew
constexpr qint64 GiveUpMs = 10000;

QColor markerOf(int capture) {
    return QColor(20 + capture * 7 % 230, 40 + capture * 13 % 200, 60 + capture * 29 % 190);
}

template <class Condition> double msUntil(Condition condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > GiveUpMs)
            qFatal("the capture never appeared");
        QThread::usleep(PollMicroseconds);
    }
    return clock.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 5)
        qFatal("usage: switch-latency EDITOR WIDTH HEIGHT RUNS");
    const QSize size(arguments[2].toInt(), arguments[3].toInt());
    const int presses = WarmUpRuns + arguments[4].toInt();

    QProcess editor;
    editor.setProcessChannelMode(QProcess::ForwardedChannels);
    editor.start(arguments[1], QStringList());
    waitForServer();

    const ScreenObserver screen;
    const QDir folder(qEnvironmentVariable("TMPDIR"));
    std::vector<QByteArray> captures;
    QPoint where;
    for (int i = 0; i <= presses; ++i) {
        captures.push_back(encoded(drawCapture(size, markerOf(i))));
        const QString path = folder.absoluteFilePath(QStringLiteral("capture-%1.png").arg(i));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(captures.back()) != captures.back().size())
            qFatal("the picture cannot be written");
        file.close();
        IpcClient().Send(QStringLiteral("TNDEMutex"),
                         QStringLiteral("/path \"%1\" /point 100 100").arg(path));
        const QRgb marker = markerOf(i).rgb();
        msUntil(
            [&] { return where.isNull() ? screen.shows(marker, &where) : screen.pixel(where) == marker; });
        QThread::msleep(RestMs);
    }

    std::vector<double> decode, painted, over;
    for (int i = presses - 1; i >= 0; --i) {
        const double decodeTime = decodeMs(captures[size_t(i)]);
        screen.pressKey("Down");
        const double paintedTime = msUntil([&] { return screen.pixel(where) == markerOf(i).rgb(); });
        QThread::msleep(RestMs);
        if (i < presses - WarmUpRuns) {
            decode.push_back(decodeTime);
            painted.push_back(paintedTime);
            over.push_back(paintedTime - decodeTime);
        }
    }
    std::printf("%.1f\t%.1f\t%.1f\n", median(decode), median(painted), median(over));
    IpcClient().Send(QStringLiteral("TNDEMutex"), QStringLiteral("/kill"));
    if (!editor.waitForFinished())
        editor.kill();
    return 0;
}
