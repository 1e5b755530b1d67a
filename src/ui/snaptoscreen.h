#pragma once

#include <QPoint>
#include <QRect>
#include <QVector>

class QWidget;

/// Where a window with that frame goes so that it no longer stands across screens.
///
/// `geometry` is the window without its frame: only one that meets two or more of the screens moves, onto the
/// screen that shows most of the frame, to that of the screen's edges that is nearest. All rectangles are
/// device pixels of the desktop. Gives the new top left of the frame.
QPoint snappedToScreen(const QRect &geometry, const QRect &frame, const QVector<QRect> &screens);

/// Moves the window off the border between two screens.
void snapToScreen(QWidget *window);
