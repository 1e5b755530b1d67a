#include "popups/colorselecttabbutton.h"

#include "popups/colorselectbutton.h"

#include <QPainter>
#include <QStyleOptionButton>

ColorSelectTabButton::ColorSelectTabButton(QWidget *parent) : QPushButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setCheckable(true);
}

void ColorSelectTabButton::setColor(const QColor &color) {
    m_color = color;
    update();
}

void ColorSelectTabButton::paintEvent(QPaintEvent *event) {
    QPushButton::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    // As large as a capital letter's line, in the room that the sheet leaves before the text.
    const QRect contents = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    const int side = fontMetrics().ascent() + 1;
    const int left = qMax(0, contents.left() - side - side / 2);
    QPainter painter(this);
    paintColorChip(painter, QRect(left, (height() - side) / 2, side, side), m_color, isEnabled());
}
