#include "canvas/cropplacement.h"

namespace {

/// Between the frame's corner and the popup.
constexpr int Gap = 10;

/// In a view too small for the popup the upper limit wins.
int bounded(int lowest, int wish, int highest) {
    return qMin(qMax(wish, lowest), highest);
}

} // namespace

QPoint cropPopupPlace(const QPoint &corner, const QSize &popup, const QRect &view, const QSize &bars) {
    const int viewBottom = view.top() + view.height();
    int x = bounded(view.left(), corner.x() - popup.width(),
                    view.left() + view.width() - popup.width() - bars.width());
    int y = bounded(view.top(), corner.y() + Gap, viewBottom - popup.height() - bars.height());
    const int below = viewBottom - corner.y();
    const bool tooLow = below > 0 && below < popup.height();
    if (tooLow)
        y = corner.y() - popup.height() - Gap;
    // Otherwise it would lie over the corner, whose handle it must leave free.
    if ((tooLow || below <= 0) && x + Gap + popup.width() > corner.x())
        x = corner.x() - popup.width() - Gap;
    return QPoint(x, y);
}
