#pragma once

#include <QtGlobal>

/// The loops over rows of pixels in which pixelating spends its time.
///
/// There are two builds of each: one for any processor, and one for processors with vectors of 32 bytes,
/// which takes little more than half the time. Both give the same bytes. Of a pixel of 32 bits the fourth
/// byte in memory is its alpha; rows that are read and rows that are written may not overlap. Any thread.
struct RowLoops {
    /// Copies a row of 32-bit pixels with 1 in place of each alpha, and zeros for a pixel with alpha 0.
    void (*maskTransparent)(const uchar *row, int width, uchar *masked);
    /// Adds each of `count` bytes to a sum of its own, which is to have room for it.
    void (*addBytes)(const uchar *row, int count, quint16 *sums);
    /// Gives each 32-bit pixel with an alpha above 0 the colour of `colors`, whose alpha is 0.
    void (*mergeColors)(const uchar *colors, int width, uchar *row);

    /// For any processor.
    static const RowLoops &portable();
    /// Null where the processor has no such vectors or the compiler cannot build for some functions only.
    static const RowLoops *wide();
    /// What this processor does best.
    static const RowLoops &best();
};
