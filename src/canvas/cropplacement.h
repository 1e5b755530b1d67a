#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Where the crop's popup stands: below the frame's bottom right corner and to the left of it, inside the
/// view; above the corner where there is too little room below. All in global coordinates, not scaled.
///
/// `bars` is the room that the view's scroll bars take: the width of the vertical one and the height of the
/// horizontal one.
QPoint cropPopupPlace(const QPoint &corner, const QSize &popup, const QRect &view, const QSize &bars);
