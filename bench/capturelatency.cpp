// usage: capture-latency EDITOR WIDTH HEIGHT file|memory RUNS
//
// Plays the capture process before a running editor and tells how long a picture takes to appear, as the
// user would see it: from the moment at which the command line is sent until the window on the X server shows
// the marker colour of this very capture. Prints, tab-separated and in milliseconds, the median of decoding
// the same bytes in this process, of the whole road, and of the difference, each pair taken in one run.

#include "ipc/ipcclient.h"
#include "measuring.h"
#include "platform/sharedimageblock.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QSharedMemory>
#include <QThread>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr int WarmUpRuns = 3;
constexpr int PollMicroseconds = 300;
constexpr qint64 GiveUpMs = 10000;

/// The two roads of a picture into the editor.
class Capture {
public:
    explicit Capture(bool byMemory) : m_byMemory(byMemory), m_folder(qEnvironmentVariable("TMPDIR")) {}

    /// Puts the bytes where the editor will find them and returns the line that announces them.
    QString prepare(const QByteArray &bytes, int run) {
        const QString key = m_folder.absoluteFilePath(QStringLiteral("capture-%1.png").arg(run));
        const QString line = QStringLiteral("/path \"%1\" /point 100 100").arg(key);
        if (!m_byMemory) {
            QFile file(key);
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
                qFatal("the picture cannot be written");
            return line;
        }
        m_block = std::make_unique<QSharedMemory>();
        const platform::SharedImageBlock names = platform::sharedImageBlock();
        m_block->setNativeKey(names.nativeKey);
        if (!m_block->create(bytes.size()))
            qFatal("the shared block cannot be made: %s", qPrintable(m_block->errorString()));
        std::memcpy(m_block->data(), bytes.constData(), size_t(bytes.size()));
        return line + QStringLiteral(" /memory %1").arg(bytes.size());
    }

private:
    bool m_byMemory;
    QDir m_folder;
    std::unique_ptr<QSharedMemory> m_block;
};

/// Milliseconds from sending the line to the marker on the screen. The first picture tells where to look.
double paintedMs(const ScreenObserver &screen, const QString &line, QRgb marker, QPoint *where) {
    IpcClient client;
    QElapsedTimer clock;
    clock.start();
    if (!client.Send(QStringLiteral("TNDEMutex"), line))
        qFatal("the line cannot be sent");
    while (where->isNull() ? !screen.shows(marker, where) : screen.pixel(*where) != marker) {
        if (clock.elapsed() > GiveUpMs)
            qFatal("the picture never appeared");
        QThread::usleep(PollMicroseconds);
    }
    return clock.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 6)
        qFatal("usage: capture-latency EDITOR WIDTH HEIGHT file|memory RUNS");
    const QSize size(arguments[2].toInt(), arguments[3].toInt());
    const int runs = arguments[5].toInt();

    QProcess editor;
    editor.setProcessChannelMode(QProcess::ForwardedChannels);
    editor.start(arguments[1], QStringList());
    waitForServer();

    const ScreenObserver screen;
    Capture capture(arguments[4] == QLatin1String("memory"));
    std::vector<double> decode, painted, over;
    QPoint where;
    for (int run = 0; run < WarmUpRuns + runs; ++run) {
        const QColor marker(20 + run * 7 % 230, 40 + run * 13 % 200, 60 + run * 29 % 190);
        const QByteArray bytes = encoded(drawCapture(size, marker));
        const QString line = capture.prepare(bytes, run);
        const double decodeTime = decodeMs(bytes);
        const double paintedTime = paintedMs(screen, line, marker.rgb(), &where);
        QThread::msleep(150); // thumbnails and the like of this run are not the next one's business
        if (run >= WarmUpRuns) {
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
