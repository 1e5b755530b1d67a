// The mosaic against a copy of the same bytes, which is what memory alone would allow.

#include "canvas/pixelate.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

namespace {

constexpr int Width = 3840;
constexpr int Height = 2160;
constexpr int PlainBlock = 6;

/// A picture with colours that change and, now and then, a pixel that is not there.
QImage capture() {
    QImage image(Width, Height, QImage::Format_ARGB32);
    for (int y = 0; y < Height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < Width; ++x)
            line[x] = qRgba(x / 16, y / 9, (x ^ y) & 255, x % 97 ? 255 : 0);
    }
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void copy(benchmark::State &state) {
    const QImage image = capture();
    const auto bytes = std::size_t(image.sizeInBytes());
    const auto target = std::make_unique<uchar[]>(bytes);
    for (auto _ : state) {
        std::memcpy(target.get(), image.constBits(), bytes);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copy)->Name("pixelate/copy");

void pixelateAll(benchmark::State &state, int block) {
    QImage image = capture();
    for (auto _ : state)
        pixelate(image, image.rect(), block);
}
/// The same as one would put it down first: over the pixels of each block, twice.
void pixelatePlainly(QImage &image, int block) {
    const auto eachPixel = [&](const QRect &area, auto work) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            uchar *pixel = image.scanLine(y) + area.left() * 4;
            for (int x = area.left(); x <= area.right(); ++x, pixel += 4) {
                if (pixel[3] != 0)
                    work(pixel);
            }
        }
    };
    for (int top = 0; top < image.height(); top += block) {
        for (int left = 0; left < image.width(); left += block) {
            const QRect area = QRect(left, top, block, block) & image.rect();
            quint32 sums[3] = {}, count = 0;
            eachPixel(area, [&](const uchar *pixel) {
                ++count;
                for (int channel = 0; channel < 3; ++channel)
                    sums[channel] += pixel[channel];
            });
            eachPixel(area, [&](uchar *pixel) {
                for (int channel = 0; channel < 3; ++channel)
                    pixel[channel] = uchar(sums[channel] / count);
            });
        }
    }
}

void plainLoop(benchmark::State &state) {
    QImage image = capture();
    for (auto _ : state)
        pixelatePlainly(image, PlainBlock);
}
BENCHMARK(plainLoop)->Name("pixelate/plain");

BENCHMARK_CAPTURE(pixelateAll, , 4)->Name("pixelate/4");
BENCHMARK_CAPTURE(pixelateAll, , 6)->Name("pixelate/6");
BENCHMARK_CAPTURE(pixelateAll, , 9)->Name("pixelate/9");

} // namespace
