#pragma once

/// The zoom steps of the canvas.
namespace ZoomStep {
constexpr int Lowest = 0;   ///< 10 %
constexpr int Normal = 20;  ///< 100 %
constexpr int Highest = 44; ///< 800 %
} // namespace ZoomStep

/// The scale of a step, 1.0 for one device pixel per image pixel, rounded to whole per cent: small steps up
/// to 100 %, 15 % each up to 400 %, 100 % each beyond.
double computeZoom(int step);

/// The highest step, not counting rounding, whose scale does not exceed `scale` (0.1 to 1.0).
int zoomStepToFit(double scale);

/// The scale as the user reads it, in per cent. Truncates the product of floating point numbers, so a scale
/// that lies just below its decimal number shows as one per cent less: 1.15 as 114.
int shownPercent(double scale);
