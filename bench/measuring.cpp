#include "measuring.h"

#include "ipc/ipcclient.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QPainter>
#include <QPixmap>
#include <QThread>

#include <algorithm>

// Last, because Xlib defines words such as Bool and None.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace {
constexpr qint64 GiveUpMs = 10000;
}

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

void waitForServer() {
    IpcClient client;
    QElapsedTimer clock;
    clock.start();
    while (!client.Test(QStringLiteral("TNDEMutex"))) {
        if (clock.elapsed() > GiveUpMs)
            qFatal("the editor does not listen");
        QThread::msleep(10);
    }
}

ScreenObserver::ScreenObserver() : m_display(XOpenDisplay(nullptr)) {
    if (!m_display)
        qFatal("no X display");
}

ScreenObserver::~ScreenObserver() {
    XCloseDisplay(m_display);
}

bool ScreenObserver::shows(QRgb colour, QPoint *where) const {
    const int width = DisplayWidth(m_display, 0), height = DisplayHeight(m_display, 0);
    for (int y = height / 16; y < height; y += height / 8)
        for (int x = width / 16; x < width; x += width / 8)
            if (pixel({x, y}) == colour) {
                *where = {x, y};
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
