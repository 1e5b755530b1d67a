#include "app/captureplacement.h"

namespace {
constexpr int RoomAround = 200; // device pixels, both sides together
constexpr int RoomBefore = 100; // left of and above the capture
/// No desktop reaches so far. A command line can name any number, and sums with it must not overflow.
constexpr int Farthest = 1000000;
} // namespace

QRect fittedGeometry(const CaptureFit &fit) {
    const int width = qMin(fit.image.width() + RoomAround + fit.panelWidth, fit.available.width());
    const int height = qMin(fit.image.height() + RoomAround + fit.toolbarHeight, fit.available.height());
    const int x = qBound(0, fit.point.x(), Farthest) - RoomBefore;
    const int y = qBound(0, fit.point.y(), Farthest) - fit.toolbarHeight - RoomBefore;
    const QSize frame = fit.frame.expandedTo(QSize(0, 0)); // never larger than the screen
    return {qMax(0, x), qMax(0, y), width - frame.width(), height - frame.height()};
}
