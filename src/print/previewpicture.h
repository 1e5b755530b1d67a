#pragma once

#include "print/pagelayout.h"

#include <QPixmap>

/// The picture of the sheet: paper, image, dashed margins and, on request, the frame around the image.
class PreviewPicture {
public:
    /// Gray, everything is. Null for a layout without paper.
    QPixmap draw(const QPixmap &image, const PreviewLayout &layout, bool withBorder, bool isGray);

private:
    void reduce(const QPixmap &image, const ImagePlacement &placement);

    QPixmap m_reduced; ///< what is drawn for the image: it, or an average that is nearer to its size there
    qint64 m_imageKey = 0; ///< of that image
    int m_halvings = 0;
};
