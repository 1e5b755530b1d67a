#include "runningeditor.h"

#include "figures.h"
#include "ipc/ipcclient.h"
#include "measuring.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QThread>

// Last, because Xlib defines words such as Bool and None.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace {

constexpr qint64 GiveUpMs = 10000;
constexpr int PollMicroseconds = 300;

/// Waits without an event loop; whatever is waited for happens in another process.
void waitUntil(const std::function<bool()> &condition, int pollMicroseconds, const char *what) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > GiveUpMs)
            qFatal("waited in vain for %s", what);
        QThread::usleep(pollMicroseconds);
    }
}

QImage drawCapture(const QSize &size, const QColor &marker) {
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

} // namespace

MarkedCapture::MarkedCapture(const QSize &size, int which)
    : number(which), marker(qRgb(20 + which * 7 % 230, 40 + which * 13 % 200, 60 + which * 29 % 190)) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    drawCapture(size, QColor(marker)).save(&buffer, "PNG");
}

QString MarkedCapture::toFile() const {
    const QString path =
        QDir(qEnvironmentVariable("TMPDIR")).absoluteFilePath(QStringLiteral("capture-%1.png").arg(number));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the picture cannot be written");
    return path;
}

double MarkedCapture::decodeMs() const {
    return clockMs([this] {
        QPixmap pixmap;
        if (!pixmap.loadFromData(bytes))
            qFatal("the picture cannot be decoded");
    });
}

RunningEditor::RunningEditor(const QString &program) {
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(program, QStringList());
    IpcClient client;
    waitUntil([&] { return client.Test(QStringLiteral("TNDEMutex")); }, 10000, "the editor to listen");
}

RunningEditor::~RunningEditor() {
    send(QStringLiteral("/kill"));
    if (!m_process.waitForFinished())
        m_process.kill();
}

void RunningEditor::send(const QString &line) {
    IpcClient client;
    if (!client.Send(QStringLiteral("TNDEMutex"), line))
        qFatal("the line cannot be sent");
}

QString RunningEditor::captureLine(const QString &key) {
    return QStringLiteral("/path \"%1\" /point 100 100").arg(key);
}

ScreenObserver::ScreenObserver() : m_display(XOpenDisplay(nullptr)) {
    if (!m_display)
        qFatal("no X display");
}

ScreenObserver::~ScreenObserver() {
    XCloseDisplay(m_display);
}

double ScreenObserver::msUntilShown(QRgb marker, const std::function<void()> &action) {
    return clockMs([&] {
        action();
        waitUntil([&] { return m_where.isNull() ? finds(marker) : pixel(m_where) == marker; },
                  PollMicroseconds, "a capture on the screen");
    });
}

bool ScreenObserver::finds(QRgb colour) {
    const int width = DisplayWidth(m_display, 0), height = DisplayHeight(m_display, 0);
    for (int y = height / 16; y < height; y += height / 8)
        for (int x = width / 16; x < width; x += width / 8)
            if (pixel({x, y}) == colour) {
                m_where = {x, y};
                return true;
            }
    return false;
}

QRgb ScreenObserver::pixel(QPoint at) const {
    XImage *image =
        XGetImage(m_display, DefaultRootWindow(m_display), at.x(), at.y(), 1, 1, AllPlanes, ZPixmap);
    const QRgb colour = QRgb(XGetPixel(image, 0, 0)) | 0xFF000000u;
    XDestroyImage(image);
    return colour;
}

void ScreenObserver::pressKey(const char *name) const {
    const KeyCode key = XKeysymToKeycode(m_display, XStringToKeysym(name));
    XTestFakeKeyEvent(m_display, key, True, CurrentTime);
    XTestFakeKeyEvent(m_display, key, False, CurrentTime);
    XFlush(m_display);
}

void OverDecoding::add(double decodeMs, double shownMs) {
    m_decode.append(decodeMs);
    m_shown.append(shownMs);
    m_over.append(shownMs - decodeMs);
}

void OverDecoding::print(const QString &what, double bound) const {
    figures::print(QStringLiteral("%1 (%2) less decoding (%3)")
                       .arg(what)
                       .arg(median(m_shown), 0, 'f', 1)
                       .arg(median(m_decode), 0, 'f', 1),
                   median(m_over), "ms", bound);
}
