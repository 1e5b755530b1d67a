#include "history/thumbnail.h"

#include <QPixmap>
#include <QSize>

namespace {

constexpr int IntermediateSide = 400;

bool isWide(const QPixmap &image) {
    return image.width() > image.height();
}

int iconSide(const QPixmap &image, const QSize &iconSize) {
    return isWide(image) ? iconSize.width() : iconSize.height();
}

// Not `scaledToWidth`: it gives a null pixmap for an image so narrow that the other side rounds to 0.
QPixmap scaledToSide(const QPixmap &image, int side) {
    if (image.isNull() || side <= 0)
        return {};
    const double factor = double(side) / (isWide(image) ? image.width() : image.height());
    const QSize size = isWide(image) ? QSize(side, qMax(1, qRound(image.height() * factor)))
                                     : QSize(qMax(1, qRound(image.width() * factor)), side);
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QPixmap Thumbnail::intermediate(const QPixmap &image, const QSize &iconSize) {
    const int side = iconSide(image, iconSize);
    if (side <= 0)
        return {};
    return scaledToSide(image, qMax(side, side * (IntermediateSide / side)));
}

QPixmap Thumbnail::icon(const QPixmap &source, const QSize &iconSize) {
    return scaledToSide(source, iconSide(source, iconSize));
}
