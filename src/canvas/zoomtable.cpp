#include "canvas/zoomtable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int CoarseStep = 40; // from here on a step is a whole 100 %
constexpr double LowestScale = 0.1;
constexpr double CoarseScale = 4.0;
constexpr double HighestScale = 8.0;

double exactZoom(int step) {
    if (step < ZoomStep::Normal)
        return std::max(LowestScale, step * 0.9 / 20.0 + LowestScale);
    if (step <= CoarseStep)
        return std::min(CoarseScale, (step - ZoomStep::Normal) * 3.0 / 20.0 + 1.0);
    return std::min(HighestScale, (step - CoarseStep) + CoarseScale);
}

} // namespace

double computeZoom(int step) {
    return std::round(exactZoom(step) * 100) / 100;
}

int zoomStepToFit(double scale) {
    return static_cast<int>((scale - LowestScale) * 20.0 / 0.9);
}

int shownPercent(double scale) {
    return static_cast<int>(scale * 100);
}
