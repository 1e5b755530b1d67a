#pragma once

#include "canvas/shapetype.h"

/// What using a tool is called in the usage statistics; null for a mode that is not reported.
/// `lineStyle` is a `Qt::PenStyle` and counts for figures only.
const char *toolUsageCode(ShapeTypes::ShapeType shape, int lineStyle);
/// Whether the tool draws a figure, whose line style the statistics tell apart.
bool isFigure(ShapeTypes::ShapeType shape);
