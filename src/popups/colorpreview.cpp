#include "popups/colorpreview.h"

#include "popups/colorselectbutton.h"

#include <QPainter>

ColorPreview::ColorPreview(QWidget *parent) : QWidget(parent) {}

void ColorPreview::setColor(const QColor &color) {
    m_color = color;
    setAccessibleName(color.name());
    update();
}

void ColorPreview::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintColorChip(painter, rect(), m_color, true);
}
