#include "popups/colorselectbutton.h"

#include "ui/stylecolors.h"

#include <QIcon>
#include <QPainter>
#include <QStyleOptionButton>

namespace {

/// How much of a colour is left in a swatch that cannot be chosen.
constexpr double DisabledOpacity = 0.35;
constexpr double ChipRadius = 2.0;

} // namespace

void paintColorChip(QPainter &painter, const QRect &rect, const QColor &color, bool enabled) {
    if (!color.isValid() || rect.isEmpty())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (!enabled)
        painter.setOpacity(DisabledOpacity);
    if (color.alpha() == 0) {
        const QIcon icon(QStringLiteral(":/res/popup/color_select/transparent.svg"));
        icon.paint(&painter, rect);
    } else {
        painter.setPen(StyleColors::instance().color(QStringLiteral("color20")));
        painter.setBrush(color);
        // Half a pixel in, so that the outline covers whole pixels.
        painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), ChipRadius, ChipRadius);
    }
    painter.restore();
}

ColorSelectButton::ColorSelectButton(QWidget *parent) : ItemButton(parent) {
    setCheckable(true);
}

void ColorSelectButton::setColor(const QColor &color) {
    // Colours of the free picker come as hue and saturation and would never equal the same one here.
    m_color = color.isValid() ? QColor::fromRgba(color.rgba()) : QColor();
    update();
}

void ColorSelectButton::paintEvent(QPaintEvent *event) {
    ItemButton::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    // With a menu the style forgets the padding that keeps the colour off the arrow.
    option.features &= ~QStyleOptionButton::HasMenu;
    QPainter painter(this);
    paintColorChip(painter, style()->subElementRect(QStyle::SE_PushButtonContents, &option, this), m_color,
                   isEnabled());
}
