#include "ui/snaptoscreen.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

qint64 area(const QRect &rect) {
    return qint64(rect.width()) * rect.height();
}

QRect screenThatShowsMost(const QRect &frame, const QVector<QRect> &screens) {
    QRect best;
    qint64 shown = 0;
    for (const QRect &screen : screens) {
        const QRect common = screen & frame;
        if (!common.isEmpty() && area(common) > shown) {
            shown = area(common);
            best = screen;
        }
    }
    return best;
}

} // namespace

QPoint snappedToScreen(const QRect &geometry, const QRect &frame, const QVector<QRect> &screens) {
    const auto met = std::count_if(screens.begin(), screens.end(),
                                   [&](const QRect &screen) { return screen.intersects(geometry); });
    const QRect screen = screenThatShowsMost(frame, screens);
    if (met < 2 || screen.isNull())
        return frame.topLeft();

    // Edges as right and bottom ends, not last pixels.
    const int screenRight = screen.x() + screen.width();
    const int screenBottom = screen.y() + screen.height();
    const int left = frame.x() - screen.x();
    const int right = screenRight - (frame.x() + frame.width());
    const int top = frame.y() - screen.y();
    const int bottom = screenBottom - (frame.y() + frame.height());
    const int nearest = std::min({left, right, top, bottom});
    if (left == nearest)
        return QPoint(screen.x(), frame.y());
    if (right == nearest)
        return QPoint(screenRight - frame.width(), frame.y());
    if (top == nearest)
        return QPoint(frame.x(), screen.y());
    return QPoint(frame.x(), screenBottom - frame.height());
}

void snapToScreen(QWidget *window) {
    QVector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append(screen->geometry());
    const QRect frame = window->frameGeometry();
    const QPoint target = snappedToScreen(window->geometry(), frame, screens);
    if (target != frame.topLeft())
        window->move(target);
}
