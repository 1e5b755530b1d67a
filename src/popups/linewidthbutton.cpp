#include "popups/linewidthbutton.h"

#include "ui/stylecolors.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace {

/// The bar's part of the button's width.
constexpr double BarPart = 0.47;

} // namespace

LineWidthButton::LineWidthButton(QWidget *parent) : QPushButton(parent) {
    setCursor(Qt::PointingHandCursor);
}

void LineWidthButton::setValue(int value) {
    m_value = value;
    setText(QString::number(value) + QStringLiteral("px"));
    update();
}

void LineWidthButton::paintEvent(QPaintEvent *event) {
    QPushButton::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int left = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).left();
    const QRectF bar(left, (height() - m_value) * 0.5, BarPart * width(), m_value);
    const QColor color =
        isChecked() ? StyleColors::instance().color(QStringLiteral("color13")) : QColor(Qt::black);
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.fillRect(bar, color);
}
