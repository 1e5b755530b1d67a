// The mosaic against a copy of the same bytes, which is what memory alone would allow.

#include "canvas/pixelate.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

namespace {

constexpr int Width = 3840;
constexpr int Height = 2160;

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
BENCHMARK_CAPTURE(pixelateAll, , 4)->Name("pixelate/4");
BENCHMARK_CAPTURE(pixelateAll, , 6)->Name("pixelate/6");
BENCHMARK_CAPTURE(pixelateAll, , 9)->Name("pixelate/9");

} // namespace
