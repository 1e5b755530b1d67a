#include "popups/gradientslider.h"

#include "ui/stylecolors.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

namespace {

/// The bar's part of the widget's width; the handle takes all of it.
constexpr double GroovePart = 0.5;
constexpr double GrooveRadius = 2.0;

} // namespace

GradientSlider::GradientSlider(QWidget *parent) : QSlider(Qt::Vertical, parent) {
    setCursor(Qt::PointingHandCursor);
}

void GradientSlider::setGradient(const QList<QColor> &colors) {
    m_gradient = colors;
    update();
}

void GradientSlider::setHandleWidth(int width) {
    m_handleWidth = width;
    update();
}

double GradientSlider::handleRadius() const {
    return (width() - m_handleWidth) / 2.0;
}

QRectF GradientSlider::grooveRect() const {
    const double grooveWidth = width() * GroovePart;
    const double end = width() / 2.0;
    return QRectF((width() - grooveWidth) / 2.0, end, grooveWidth, qMax(0.0, height() - 2 * end));
}

QPointF GradientSlider::handleCentre() const {
    const QRectF groove = grooveRect();
    const int range = maximum() - minimum();
    const double fraction = range == 0 ? 0.0 : double(value() - minimum()) / range;
    return QPointF(groove.center().x(), groove.top() + (1.0 - fraction) * groove.height());
}

int GradientSlider::valueAt(double y) const {
    const QRectF groove = grooveRect();
    if (groove.height() <= 0.0)
        return value();
    const double fraction = qBound(0.0, 1.0 - (y - groove.top()) / groove.height(), 1.0);
    return minimum() + qRound(fraction * (maximum() - minimum()));
}

void GradientSlider::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    setValue(valueAt(event->localPos().y()));
}

void GradientSlider::mouseMoveEvent(QMouseEvent *event) {
    if (isSliderDown())
        setValue(valueAt(event->localPos().y()));
}

void GradientSlider::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
}

void GradientSlider::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QLinearGradient fill(0.0, 0.0, 0.0, 1.0);
    fill.setCoordinateMode(QGradient::ObjectMode);
    const int last = m_gradient.size() - 1;
    for (int index = 0; index <= last; ++index)
        fill.setColorAt(last == 0 ? 0.0 : double(index) / last, m_gradient.at(index));
    painter.setBrush(fill);
    painter.drawRoundedRect(grooveRect(), GrooveRadius, GrooveRadius);

    const QColor outline =
        StyleColors::instance().color(hasFocus() ? QStringLiteral("color13") : QStringLiteral("color8"));
    painter.setPen(QPen(outline, m_handleWidth));
    painter.setBrush(QColor::fromHsv(qBound(0, value(), 359), 255, 255, 255));
    painter.drawEllipse(handleCentre(), handleRadius(), handleRadius());
}
