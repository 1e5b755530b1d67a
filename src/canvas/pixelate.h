#pragma once

#include <QRect>

class QImage;
struct RowLoops;

/// Replaces each block of `region` by the average colour of its pixels, in place.
///
/// Blocks are `block` x `block` image pixels, counted from the region's top left; the last row and column
/// may be smaller. Bytes 0 to 2 are averaged raw (no gamma) and truncated; pixels with alpha 0 are neither
/// counted nor written. Of the region only what lies in the image counts. Takes 24- and 32-bit formats;
/// other images stay as they are, and so does every image if `block` is below 1.
/// Any thread, as long as nobody else touches that region.
void pixelate(QImage &image, const QRect &region, int block);

/// The same by these loops.
void pixelate(QImage &image, const QRect &region, int block, const RowLoops &loops);
