#pragma once

#include <QRectF>
#include <QSizeF>

constexpr float PixelsPerInch = 96.0F;
constexpr double PixelsPerMillimetre = 3.7795275591; ///< at 96 per inch

/// How the user wants a page.
struct PageSettings {
    enum Scale { Fit = 0, Actual = 1, Custom = 2 }; ///< the numbers are stored

    Scale scale = Fit;
    int scaleValue = 100; ///< percent, for `Custom`
    bool centerHorizontal = false;
    bool centerVertical = false;
    int leftMargin = 0; ///< millimetres from the edges of the paper
    int topMargin = 0;
    int rightMargin = 0;
    int bottomMargin = 0;
};

/// Which part of an image goes where. Both are empty where there is no room.
struct ImagePlacement {
    QRectF target;
    QRectF source; ///< image pixels
};

/// The sheet as the preview shows it, in pixels of the preview.
struct PreviewLayout {
    QSizeF paper;   ///< empty when there is nothing to show
    QRectF margins; ///< the area that the margins leave
    ImagePlacement image;
};

/// How many pixels one image pixel takes; `base` is what it takes at 100 %. Only `Fit` looks at the area,
/// and only the others at `base`.
float imageScale(const PageSettings &settings, const QSizeF &image, const QSizeF &area, float base);

/// Where the image is printed: pixels at 96 per inch from the corner of the `printable` area, which itself
/// is measured from the corner of the `paper`. The printer's own margins count where they are wider.
ImagePlacement layOutPage(const PageSettings &settings, const QSizeF &image, const QRectF &printable,
                          const QSizeF &paper);

/// The same as the preview shows it, as large as fits into `available`. On purpose it measures from the
/// paper and knows nothing of the printer's own margins, so it shows what the margins ask for, and it keeps
/// half a pixel clear around the image.
PreviewLayout layOutPreview(const PageSettings &settings, const QSizeF &image, const QSizeF &paper,
                            const QSizeF &available);
