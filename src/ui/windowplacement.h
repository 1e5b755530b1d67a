#pragma once

#include <QRect>
#include <QVector>

class QWidget;

/// One screen as placement sees it, in device pixels of the desktop.
struct ScreenArea {
    QRect geometry;
    QRect available; ///< less panels and docks
};

/// Where a window with that frame goes so that it stands fully in the available area of a screen.
///
/// A frame all of whose corners lie on screens stays. Otherwise it is moved by its left, right, bottom and
/// top edges, in this order, into the available area of the screen that shows most of it, or of the nearest
/// one when none shows it. Too wide a frame ends up at the right edge, too high a one at the top.
QPoint placedOnScreen(const QRect &frame, const QVector<ScreenArea> &screens);
/// The top left of a window of that size in the middle of the area.
QPoint centredIn(const QRect &available, const QSize &size);

/// Moves the window fully onto a screen.
void keepOnScreen(QWidget *window);
/// Raises and activates the (shown) window and gives it the focus; its open dialogs stay above it.
void bringToFront(QWidget *window);
/// Centres the window, by the given size, on the available area of its screen.
void centreOnScreen(QWidget *window, const QSize &size);
