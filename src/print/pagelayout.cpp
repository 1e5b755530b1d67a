#include "print/pagelayout.h"

#include <algorithm>

namespace {

/// Millimetres of the user's margin in pixels, in single precision.
float inPixels(int millimetres) {
    return static_cast<float>(static_cast<float>(millimetres) * PixelsPerMillimetre);
}

float notNegative(double length) {
    return std::max(0.0F, static_cast<float>(length));
}

/// The part of the scaled image that goes into the area, at the area's corner or in its middle.
ImagePlacement place(const PageSettings &settings, const QSizeF &image, const QRectF &area, float scale) {
    if (area.isEmpty() || scale <= 0)
        return {};
    const QSizeF scaled = image * scale;
    const QSizeF size = scaled.boundedTo(area.size());
    ImagePlacement placement{QRectF(area.topLeft(), size), QRectF(QPointF(), size / scale)};
    // A small image stands in the middle of the area, of a large one the middle is taken.
    if (settings.centerHorizontal) {
        placement.target.moveLeft(area.left() + (area.width() - size.width()) * 0.5);
        placement.source.moveLeft((scaled.width() - size.width()) * 0.5 / scale);
    }
    if (settings.centerVertical) {
        placement.target.moveTop(area.top() + (area.height() - size.height()) * 0.5);
        placement.source.moveTop((scaled.height() - size.height()) * 0.5 / scale);
    }
    return placement;
}

} // namespace

float imageScale(const PageSettings &settings, const QSizeF &image, const QSizeF &area, float base) {
    switch (settings.scale) {
    case PageSettings::Fit:
        return static_cast<float>(std::min(area.width() / image.width(), area.height() / image.height()));
    case PageSettings::Actual:
        return base;
    case PageSettings::Custom:
        break;
    }
    return static_cast<float>(settings.scaleValue * base / 100.0);
}

ImagePlacement layOutPage(const PageSettings &settings, const QSizeF &image, const QRectF &printable,
                          const QSizeF &paper) {
    if (paper.isEmpty() || image.isEmpty())
        return {};
    // What the user's margins ask for beyond the printer's own.
    const float left = notNegative(inPixels(settings.leftMargin) - static_cast<float>(printable.left()));
    const float top = notNegative(inPixels(settings.topMargin) - static_cast<float>(printable.top()));
    const float right =
        notNegative(inPixels(settings.rightMargin) - static_cast<float>(paper.width() - printable.right()));
    const float bottom = notNegative(inPixels(settings.bottomMargin) -
                                     static_cast<float>(paper.height() - printable.bottom()));
    const QRectF area(QPointF(left, top), QPointF(printable.width() - right, printable.height() - bottom));
    return place(settings, image, area, imageScale(settings, image, area.size(), 1.0F));
}

PreviewLayout layOutPreview(const PageSettings &settings, const QSizeF &image, const QSizeF &paper,
                            const QSizeF &available) {
    if (paper.isEmpty() || available.isEmpty())
        return {};
    // The sheet begins as a square that is as wide as the room, and does not grow to fill a narrow one.
    const double aspect = paper.width() / paper.height();
    double width = std::min(available.width(), available.width() * aspect);
    double height = width / aspect;
    if (height > available.height()) {
        height = available.height();
        width = height * aspect;
    }
    const auto factor = static_cast<float>(width / paper.width());

    PreviewLayout layout;
    layout.paper = QSizeF(width, height);
    const auto margin = [factor](int millimetres) { return notNegative(inPixels(millimetres)) * factor; };
    layout.margins =
        QRectF(QPointF(margin(settings.leftMargin), margin(settings.topMargin)),
               QPointF(width - margin(settings.rightMargin), height - margin(settings.bottomMargin)));
    if (image.isEmpty())
        return layout;
    layout.image =
        place(settings, image, layout.margins, imageScale(settings, image, layout.margins.size(), factor));
    if (!layout.image.target.isEmpty())
        layout.image.target = QRectF(layout.image.target.topLeft() + QPointF(0.5, 0.5),
                                     layout.image.target.size() - QSizeF(1.0, 1.0));
    return layout;
}
