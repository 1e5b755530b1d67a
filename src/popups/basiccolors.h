#pragma once

#include <QColor>
#include <QList>
#include <QString>

/// A colour with the name that the user reads.
struct BasicColor {
    QColor color;
    QString name;
};

/// The named colours that the tools offer, in the order of their swatches. Names are translated anew at
/// each call.
namespace BasicColors {

QList<BasicColor> figureFill();
QList<BasicColor> figureOutline();
QList<BasicColor> text();
QList<BasicColor> pen();
QList<BasicColor> highlighter();

} // namespace BasicColors
