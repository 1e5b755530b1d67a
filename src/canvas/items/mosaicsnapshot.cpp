#include "canvas/items/mosaicsnapshot.h"

#include "canvas/pixelate.h"

#include <algorithm>

void MosaicSnapshot::pixelateAll(int block) {
    QRect all;
    read([&all](const QImage &image) { all = image.rect(); });
    for (int y = 0; y < all.height(); y += BandHeight) {
        const QRect band(0, y, all.width(), std::min(BandHeight, all.height() - y));
        const std::lock_guard<std::mutex> lock(m_mutex);
        pixelate(m_image, band, block);
    }
}
