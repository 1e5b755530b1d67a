#include "canvas/items/mosaicsnapshot.h"

#include "canvas/pixelate.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace {

constexpr int BitsPerByte = 8;

/// Copies what `band`, whose first row is `top`, has of `area` into the picture of that area.
void copyRows(const QImage &band, int top, const QRect &area, QImage *picture) {
    const QRect common = area & band.rect().translated(0, top);
    const int bytes = picture->depth() / BitsPerByte;
    for (int y = common.top(); y <= common.bottom(); ++y)
        std::memcpy(picture->scanLine(y - area.top()) + (common.left() - area.left()) * bytes,
                    band.constScanLine(y - top) + common.left() * bytes, common.width() * bytes);
}

} // namespace

MosaicSnapshot::MosaicSnapshot(const QImage &image) : m_image(image) {
    // Whoever takes the lock next sees all of this, however the job is handed over to its thread.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_done.reserve(static_cast<std::size_t>((m_image.height() + BandHeight - 1) / BandHeight));
}

void MosaicSnapshot::pixelateAll(int block, const std::function<void()> &bandDone) {
    try {
        pixelateBands(block, bandDone);
    } catch (...) {
        // Thrown on, it would end the program where the job is waited for. What is done stays done.
    }
}

void MosaicSnapshot::pixelateBands(int block, const std::function<void()> &bandDone) {
    for (int y = 0; y < m_image.height(); y += BandHeight) {
        QImage band = m_image.copy(0, y, m_image.width(), std::min(BandHeight, m_image.height() - y));
        pixelate(band, band.rect(), block);
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_done.push_back(band);
        }
        bandDone();
    }
}

std::vector<QImage> MosaicSnapshot::doneBands() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_done;
}

QImage MosaicSnapshot::copy(const QRect &area) const {
    // The toolkit takes a null rectangle for all of the picture.
    if (area.isEmpty())
        return QImage();
    QImage picture = m_image.copy(area);
    // Pictures with less than a byte a pixel are not pixelated.
    if (picture.isNull() || picture.depth() < BitsPerByte)
        return picture;
    int top = 0;
    for (const QImage &band : doneBands()) {
        copyRows(band, top, area, &picture);
        top += BandHeight;
    }
    return picture;
}

void MosaicSnapshot::draw(QPainter *painter, const QRect &area) const {
    const std::vector<QImage> done = doneBands();
    const std::size_t number = std::max(area.top(), 0) / BandHeight;
    const QRect band(0, static_cast<int>(number) * BandHeight, m_image.width(), BandHeight);
    if (number < done.size() && band.contains(area))
        painter->drawImage(area, done[number], area.translated(0, -band.top()));
    else
        painter->drawImage(area, copy(area));
}
