#include "measuring.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QThreadPool>
#include <QTimer>

#include <time.h>

#include <algorithm>
#include <limits>

namespace {
constexpr int GiveUpMs = 10000;
}

double median(QVector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double processorMs() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1e3 + time.tv_nsec / 1e6;
}

double costOf(const std::function<void()> &work) {
    const double begin = processorMs();
    work();
    return processorMs() - begin;
}

double fastestOf(int runs, const std::function<double()> &measure) {
    double fastest = std::numeric_limits<double>::infinity();
    for (int run = 0; run < runs; ++run)
        fastest = std::min(fastest, measure());
    return fastest;
}

double clockMs(const std::function<void()> &work) {
    QElapsedTimer clock;
    clock.start();
    work();
    return clock.nsecsElapsed() / 1e6;
}

void settle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    // What threads still do would be counted as a cost of what is measured next.
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

QImage patternedCapture(const QSize &size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = qRgb(x / 16, y / 9, (x ^ y) & 255);
    }
    return image;
}

bool EventCounter::eventFilter(QObject *, QEvent *event) {
    moves += event->type() == QEvent::MouseMove;
    paints += event->type() == QEvent::Paint;
    return false;
}

void EventCounter::waitForPaint() const {
    const int known = paints;
    // An event of its own, since the wait below is for events.
    QTimer giveUp;
    QObject::connect(&giveUp, &QTimer::timeout, [] { qFatal("waited in vain for a paint"); });
    giveUp.start(GiveUpMs);
    while (paints == known)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}
