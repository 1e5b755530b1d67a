#include "app/captureplacement.h"

namespace {
constexpr int RoomAround = 200; // device pixels, both sides together
constexpr int RoomBefore = 100; // left of and above the capture
} // namespace

QRect fittedGeometry(const CaptureFit &fit) {
    const int width = qMin(fit.image.width() + RoomAround + fit.panelWidth, fit.available.width());
    const int height = qMin(fit.image.height() + RoomAround + fit.toolbarHeight, fit.available.height());
    const int x = qMax(0, fit.point.x() - RoomBefore);
    const int y = qMax(0, fit.point.y() - fit.toolbarHeight - RoomBefore);
    return {x, y, width - fit.frame.width(), height - fit.frame.height()};
}
