#pragma once

#include "print/pagelayout.h"

#include <QPixmap>

/// The picture of the sheet: paper, image, dashed margins and, on request, the frame around the image. Gray,
/// everything is. Null for a layout without paper.
QPixmap drawPreview(const QPixmap &image, const PreviewLayout &layout, bool withBorder, bool isGray);
