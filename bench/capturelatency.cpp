// usage: capture-latency EDITOR WIDTH HEIGHT file|memory RUNS
//
// Plays the capture process before a running editor and tells how long a picture takes to appear, as the
// user would see it: from the moment at which the command line is sent until the window on the X server shows
// the marker colour of this very capture. Prints, tab-separated and in milliseconds, the median of decoding
// the same bytes in this process, of the whole road, and of the difference, each pair taken in one run.

#include "ipc/ipcclient.h"
#include "platform/sharedimageblock.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QProcess>
#include <QSharedMemory>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

// Last, because Xlib defines words such as Bool and None.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

constexpr int WarmUpRuns = 3;
constexpr int PollMicroseconds = 300;
constexpr qint64 GiveUpMs = 10000;

/// What a capture looks like to a decoder: flat areas, lines of text and a noisy photograph. The middle shows
/// one colour that differs from run to run.
QImage drawCapture(QSize size, QColor marker) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0xB9, 0xCF, 0xE4));
    sky.setColorAt(1, QColor(0x6F, 0x8F, 0xB5));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::black);
    for (int y = 40; y < size.height() - 20; y += 18)
        painter.drawText(20, y,
                         QStringLiteral("The quick brown fox %1 jumps over the lazy dog. ")
                             .arg(y)
                             .repeated(size.width() / 400));
    painter.end();
    quint32 noise = 1;
    for (int y = size.height() * 3 / 4; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = size.width() * 3 / 4; x < size.width(); ++x) {
            noise = noise * 1664525u + 1013904223u;
            line[x] = qRgb(128 + int(noise >> 28), 100 + int(noise >> 27 & 15), y * 200 / size.height());
        }
    }
    QPainter(&image).fillRect(QRect(size.width() / 4, size.height() / 4, size.width() / 2, size.height() / 2),
                              marker);
    return image;
}

QByteArray encoded(const QImage &image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

double decodeMs(const QByteArray &bytes) {
    QElapsedTimer clock;
    clock.start();
    QPixmap pixmap;
    if (!pixmap.loadFromData(bytes))
        qFatal("the picture cannot be decoded");
    return clock.nsecsElapsed() / 1e6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Looks at the screen from outside of the editor.
class ScreenObserver {
public:
    ScreenObserver() : m_display(XOpenDisplay(nullptr)) {
        if (!m_display)
            qFatal("no X display");
    }
    ~ScreenObserver() { XCloseDisplay(m_display); }
    ScreenObserver(const ScreenObserver &) = delete;
    ScreenObserver &operator=(const ScreenObserver &) = delete;

    /// Whether the colour stands somewhere on a coarse grid over the screen.
    bool shows(QRgb colour, QPoint *where) const {
        const int width = DisplayWidth(m_display, 0), height = DisplayHeight(m_display, 0);
        for (int y = height / 16; y < height; y += height / 8)
            for (int x = width / 16; x < width; x += width / 8)
                if (pixel({x, y}) == colour) {
                    *where = {x, y};
                    return true;
                }
        return false;
    }

    /// The colour of one pixel of the root window, whatever window covers it.
    QRgb pixel(QPoint at) const {
        XImage *image =
            XGetImage(m_display, DefaultRootWindow(m_display), at.x(), at.y(), 1, 1, AllPlanes, ZPixmap);
        const QRgb colour = QRgb(XGetPixel(image, 0, 0)) | 0xFF000000u;
        XDestroyImage(image);
        return colour;
    }

private:
    Display *m_display;
};

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

void waitForServer(IpcClient &client) {
    QElapsedTimer clock;
    clock.start();
    while (!client.Test(QStringLiteral("TNDEMutex"))) {
        if (clock.elapsed() > GiveUpMs)
            qFatal("the editor does not listen");
        QThread::msleep(10);
    }
}

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
    IpcClient probe;
    waitForServer(probe);

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
    probe.Send(QStringLiteral("TNDEMutex"), QStringLiteral("/kill"));
    if (!editor.waitForFinished())
        editor.kill();
    return 0;
}
