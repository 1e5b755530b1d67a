#include "ui/windowplacement.h"

#include "platform/foregroundwindow.h"
#include "platform/platform.h"

#include <QApplication>
#include <QDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

bool isOnAnyScreen(const QPoint &point, const QVector<ScreenArea> &screens) {
    return std::any_of(screens.begin(), screens.end(),
                       [&point](const ScreenArea &screen) { return screen.geometry.contains(point); });
}

bool isOnScreens(const QRect &frame, const QVector<ScreenArea> &screens) {
    return isOnAnyScreen(frame.topLeft(), screens) && isOnAnyScreen(frame.topRight(), screens) &&
           isOnAnyScreen(frame.bottomLeft(), screens) && isOnAnyScreen(frame.bottomRight(), screens);
}

qint64 area(const QRect &rect) {
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

int distance(const QRect &frame, const QRect &screen) {
    return (frame.center() - screen.center()).manhattanLength();
}

/// The screen that shows most of the frame; for a frame that is nowhere to be seen, the nearest one.
const ScreenArea &screenOf(const QRect &frame, const QVector<ScreenArea> &screens) {
    return *std::max_element(screens.begin(), screens.end(), [&](const ScreenArea &a, const ScreenArea &b) {
        const qint64 shownByA = area(frame & a.geometry);
        const qint64 shownByB = area(frame & b.geometry);
        if (shownByA != shownByB)
            return shownByA < shownByB;
        return shownByA == 0 && distance(frame, a.geometry) > distance(frame, b.geometry);
    });
}

} // namespace

QPoint placedOnScreen(const QRect &frame, const QVector<ScreenArea> &screens) {
    if (screens.isEmpty() || isOnScreens(frame, screens))
        return frame.topLeft();
    const QRect available = screenOf(frame, screens).available;
    QRect placed = frame;
    // The top comes last, so that the title bar of a window that is too high can be reached.
    if (placed.left() < available.left())
        placed.moveLeft(available.left());
    if (placed.right() > available.right())
        placed.moveRight(available.right());
    if (placed.bottom() > available.bottom())
        placed.moveBottom(available.bottom());
    if (placed.top() < available.top())
        placed.moveTop(available.top());
    return placed.topLeft();
}

QPoint centredIn(const QRect &available, const QSize &size) {
    return {available.x() + (available.width() - size.width()) / 2,
            available.y() + (available.height() - size.height()) / 2};
}

void keepOnScreen(QWidget *window) {
    QVector<ScreenArea> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append({screen->geometry(), screen->availableGeometry()});
    const QRect frame = window->frameGeometry();
    const QPoint place = placedOnScreen(frame, screens);
    if (place != frame.topLeft())
        window->move(place);
}

namespace {

/// A window manager forgets which dialogs were above a window that was hidden meanwhile. The one that has to
/// be answered first comes last, above those that it blocks.
void raiseDialogsOf(QWidget *window) {
    QList<QDialog *> dialogs = window->findChildren<QDialog *>();
    auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialogs.removeOne(modal))
        dialogs.append(modal);
    for (QDialog *dialog : qAsConst(dialogs)) {
        if (dialog->isWindow() && dialog->isVisible())
            dialog->raise();
    }
}

} // namespace

void bringToFront(QWidget *window) {
    if (QWindow *handle = window->window()->windowHandle())
        Platform::instance().foregroundWindow().bringToFront(handle);
    if (window->window()->isVisible())
        raiseDialogsOf(window->window());
    window->setFocus(Qt::OtherFocusReason);
}

void centreOnScreen(QWidget *window, const QSize &size) {
    if (const QScreen *screen = window->screen())
        window->move(centredIn(screen->availableGeometry(), size));
}
