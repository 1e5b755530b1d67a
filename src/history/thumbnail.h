#pragma once

class QPixmap;
class QSize;

/// Thumbnails are made in two steps, so that a change of the icon size repeats only the cheap one.
///
/// Both keep the aspect ratio: an image that is wider than tall gets the icon's width, any other its
/// height. The other side may be larger than the icon when the icon is not square. At least 1 x 1.
namespace Thumbnail {

/// The image at the largest whole multiple of the icon side that is not above 400 pixels, or at the icon
/// side if that is larger. Images below that size are enlarged. Null for a null image or an empty icon.
QPixmap intermediate(const QPixmap &image, const QSize &iconSize);
/// The image at icon size.
QPixmap icon(const QPixmap &source, const QSize &iconSize);

} // namespace Thumbnail
