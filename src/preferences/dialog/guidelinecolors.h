#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

/// The colours that guidelines of the capture can have. GUI thread only.
namespace GuidelineColors {

int count();
QColor color(int index);
/// Translated, in the words of the page that shows them.
QString name(int index);
/// The first entry that equals the colour, alpha included; 0 when there is none.
int indexOf(const QColor &color);

/// A square of that colour with a frame that sets it off from a white ground; `side` in device pixels.
QPixmap swatch(const QColor &color, int side);
/// The darker to the eye; `second` when both are as dark.
QColor darker(const QColor &first, const QColor &second);

} // namespace GuidelineColors
