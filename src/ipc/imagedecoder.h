#pragma once

#include <QImage>

class QIODevice;

/// Decodes the image that starts at the device's position, whatever its format, unless it takes more than
/// `limitMegabytes` of memory by the count of `imageMegabytes`.
///
/// What it would take is read from the header, before any pixel has a place in memory; a header that told
/// less than came out is found out behind the decoding. A format whose header claims nothing is refused,
/// since nobody knows what its decoder would take. Null when refused or no image. The device must be
/// seekable. Any thread.
QImage decodeImage(QIODevice *device, double limitMegabytes);

/// Size of an image in the program's count: whole megabytes of (depth / 8) * height * width bytes.
double imageMegabytes(int width, int height, int depth);
