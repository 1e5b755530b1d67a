#pragma once

class QImage;
class QString;

/// Writes an image in the format that the path's suffix names (png, gif, jpg, webp, bmp and whatever else
/// the image plug-ins write), compared without case.
///
/// `quality` counts for jpg (as given), webp (negative: 100) and the rest (negative: 0); png is always
/// written with 70. A write that fails leaves an existing file as it was and no partial file. Symbolic
/// links are followed. Any thread; touches nothing but the file.
///
/// Where no second file can be made beside an existing one (a closed folder, a mounted file) it is written
/// over in place. There alone, a program that is killed meanwhile leaves half a file.
bool writeImage(const QImage &image, const QString &path, int quality);

/// The same with the qualities of a pinned image, which is kept as good as it came. Nobody but the user may
/// read or write the file: it shows what a crop or a mosaic was to hide.
bool writePinImage(const QImage &image, const QString &path);
