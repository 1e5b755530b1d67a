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
/// A frame all of whose corners lie on screens stays. Otherwise it is moved by the left, right, bottom and
/// top edges, in this order, into the available area of the screen that holds the edge's corner.
QPoint placedOnScreen(const QRect &frame, const QVector<ScreenArea> &screens);

/// Moves the window fully onto a screen.
void keepOnScreen(QWidget *window);
/// Raises and activates the window and gives it the focus.
void bringToFront(QWidget *window);
/// Centres the window, by the given size, on the available area of its screen.
void centreOnScreen(QWidget *window, const QSize &size);
