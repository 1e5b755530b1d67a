#pragma once

#include "canvas/shapetype.h"

#include <QCursor>

/// The mouse cursor of a tool over the canvas.
QCursor toolCursor(ShapeTypes::ShapeType shape);
