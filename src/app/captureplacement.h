#pragma once

#include <QRect>

/// What the window's geometry for a new capture depends on, in device pixels.
struct CaptureFit {
    QSize image;    ///< of the capture
    int panelWidth; ///< of the recent captures
    int toolbarHeight;
    QPoint point;    ///< where on the desktop the capture was taken
    QRect available; ///< of the screen that holds the point
    QSize frame;     ///< what the window frame adds to the client area, on both sides together
};

/// The client geometry that shows the capture at full size with room around it, close to where it was
/// taken and not larger, frame included, than the available area.
///
/// The result begins neither left of nor above the desktop's origin; it may still reach beyond a screen, and
/// `keepOnScreen` moves it.
QRect fittedGeometry(const CaptureFit &fit);
