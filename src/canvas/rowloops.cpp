#include "canvas/rowloops.h"

#include <QtEndian>

#include <cstring>

// Plain loops over consecutive bytes, which compilers turn into vector code. Each is written once and inlined
// into two functions, one of which is built for wide vectors. It is these functions that are built so and not
// a file: out of a file the linker could take its build of some inline function for all of the program.
namespace {

/// The alpha byte of a pixel as it lies in memory, whatever the byte order.
const quint32 AlphaMask = qToLittleEndian(0xff000000u);
/// A one in its place, by which pixels are counted where their colours are summed.
const quint32 CountOne = qToLittleEndian(0x01000000u);

quint32 loadPixel(const uchar *from) {
    quint32 pixel;
    std::memcpy(&pixel, from, sizeof pixel);
    return pixel;
}

void storePixel(uchar *to, quint32 pixel) {
    std::memcpy(to, &pixel, sizeof pixel);
}

[[gnu::always_inline]] inline void maskLoop(const uchar *__restrict row, int width,
                                            uchar *__restrict masked) {
    for (int x = 0; x < width; ++x) {
        const quint32 pixel = loadPixel(row + 4 * x);
        storePixel(masked + 4 * x, pixel & AlphaMask ? (pixel & ~AlphaMask) | CountOne : 0);
    }
}

[[gnu::always_inline]] inline void addLoop(const uchar *__restrict row, int count, quint16 *__restrict sums) {
    for (int i = 0; i < count; ++i)
        sums[i] = static_cast<quint16>(sums[i] + row[i]);
}

[[gnu::always_inline]] inline void mergeLoop(const uchar *__restrict colors, int width,
                                             uchar *__restrict row) {
    for (int x = 0; x < width; ++x) {
        const quint32 pixel = loadPixel(row + 4 * x);
        const quint32 color = loadPixel(colors + 4 * x);
        storePixel(row + 4 * x, pixel & AlphaMask ? (pixel & AlphaMask) | color : pixel);
    }
}

void maskTransparent(const uchar *row, int width, uchar *masked) {
    maskLoop(row, width, masked);
}

void addBytes(const uchar *row, int count, quint16 *sums) {
    addLoop(row, count, sums);
}

void mergeColors(const uchar *colors, int width, uchar *row) {
    mergeLoop(colors, width, row);
}

#if defined(Q_PROCESSOR_X86_64) && defined(Q_CC_GNU)

[[gnu::target("avx2")]] void maskTransparentWide(const uchar *row, int width, uchar *masked) {
    maskLoop(row, width, masked);
}

[[gnu::target("avx2")]] void addBytesWide(const uchar *row, int count, quint16 *sums) {
    addLoop(row, count, sums);
}

[[gnu::target("avx2")]] void mergeColorsWide(const uchar *colors, int width, uchar *row) {
    mergeLoop(colors, width, row);
}

const RowLoops *wideLoops() {
    static constexpr RowLoops loops{maskTransparentWide, addBytesWide, mergeColorsWide};
    return __builtin_cpu_supports("avx2") ? &loops : nullptr;
}

#else

const RowLoops *wideLoops() {
    return nullptr;
}

#endif

} // namespace

const RowLoops &RowLoops::portable() {
    static constexpr RowLoops loops{::maskTransparent, ::addBytes, ::mergeColors};
    return loops;
}

const RowLoops *RowLoops::wide() {
    static const RowLoops *const loops = wideLoops();
    return loops;
}

const RowLoops &RowLoops::best() {
    return wide() ? *wide() : portable();
}
