#pragma once

#include <QImage>

/// What the product's averaging of blocks has to give, pixel by pixel as one would put it down first.
inline void plainPixelate(QImage &image, const QRect &region, int block) {
    const QRect area = region & image.rect();
    const int bpp = image.bytesPerLine() / image.width();
    for (int blockY = area.top(); blockY <= area.bottom(); blockY += block) {
        for (int blockX = area.left(); blockX <= area.right(); blockX += block) {
            QVector<uchar *> counted;
            for (int y = blockY; y < blockY + block && y <= area.bottom(); ++y) {
                for (int x = blockX; x < blockX + block && x <= area.right(); ++x) {
                    uchar *pixel = image.scanLine(y) + x * bpp;
                    if (bpp != 4 || pixel[3] != 0)
                        counted.append(pixel);
                }
            }
            for (int channel = 0; channel < 3; ++channel) {
                quint32 sum = 0;
                for (const uchar *pixel : qAsConst(counted))
                    sum += pixel[channel];
                for (uchar *pixel : qAsConst(counted))
                    pixel[channel] = static_cast<uchar>(sum / quint32(counted.size()));
            }
        }
    }
}
