#pragma once

#include <QPoint>
#include <QSize>

/// Where the canvas' own widgets stand in it, as their top left in the view's coordinates. Sizes are in
/// device pixels; `scale` is logical DPI / 96, for the distances, which are given at 96 per inch.
namespace ViewPlacement {

/// The zoom tool: at the bottom left, above a horizontal scroll bar.
QPoint imageTool(const QSize &view, const QSize &tool, double scale);

/// The button that brings back the history panel: at the top right, beside a vertical scroll bar of
/// `barWidth`, 0 for none.
QPoint historyButton(const QSize &view, const QSize &button, int barWidth, double scale);

} // namespace ViewPlacement
