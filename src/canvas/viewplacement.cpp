#include "canvas/viewplacement.h"

namespace {

// Distances from the view's borders, at 96 per inch.
constexpr int Margin = 10;
constexpr int ImageToolBottomMargin = 20;

int scaled(int distance, double scale) {
    return static_cast<int>(distance * scale);
}

} // namespace

QPoint ViewPlacement::imageTool(const QSize &view, const QSize &tool, double scale) {
    return {scaled(Margin, scale), view.height() - scaled(ImageToolBottomMargin, scale) - tool.height()};
}

QPoint ViewPlacement::historyButton(const QSize &view, const QSize &button, int barWidth, double scale) {
    return {view.width() - barWidth - scaled(Margin, scale) - button.width(), scaled(Margin, scale)};
}
