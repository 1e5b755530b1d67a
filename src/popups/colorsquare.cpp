#include "popups/colorsquare.h"

#include "ui/stylecolors.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace {

constexpr double KeyStep = 0.01;
constexpr double CursorRadius = 4.5;
/// Above this brightness the cursor is drawn dark.
constexpr int LightGray = 140;

} // namespace

ColorSquare::ColorSquare(QWidget *parent) : QFrame(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setAccessibleName(tr("Saturation and brightness"));
}

QColor ColorSquare::color() const {
    return m_exactColor.isValid() ? m_exactColor : QColor::fromHsvF(m_hue, m_saturation, m_value, 1.0);
}

void ColorSquare::SetColor(QColor color) {
    if (!color.isValid() || color.rgb() == this->color().rgb())
        return;
    if (color.hueF() >= 0.0)
        m_hue = color.hueF();
    m_saturation = color.saturationF();
    m_value = color.valueF();
    // The way over hue and saturation and back is not exact for dark colours.
    m_exactColor = QColor(color.rgb());
    changed();
}

void ColorSquare::SetHue(double h) {
    const double hue = qBound(0.0, h, 1.0);
    if (hue == m_hue)
        return;
    m_hue = hue;
    m_exactColor = QColor();
    changed();
}

void ColorSquare::SetSaturation(double s) {
    const double saturation = qBound(0.0, s, 1.0);
    if (saturation == m_saturation)
        return;
    m_saturation = saturation;
    m_exactColor = QColor();
    changed();
}

void ColorSquare::SetValue(double v) {
    const double value = qBound(0.0, v, 1.0);
    if (value == m_value)
        return;
    m_value = value;
    m_exactColor = QColor();
    changed();
}

void ColorSquare::changed() {
    m_cursorX = m_saturation;
    m_cursorY = 1.0 - m_value;
    update();
    emit colorChanged(color());
}

void ColorSquare::takeFrom(QPoint position) {
    if (m_squareWidth <= 0 || m_squareHeight <= 0)
        return;
    const double x = qBound(0.0, double(position.x() - m_margin) / m_squareWidth, 1.0);
    const double y = qBound(0.0, double(position.y() - m_margin) / m_squareHeight, 1.0);
    select(x, 1.0 - y);
}

void ColorSquare::select(double saturation, double value) {
    m_saturation = saturation;
    m_value = value;
    m_exactColor = QColor();
    changed();
    emit colorSelected(color());
}

void ColorSquare::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        takeFrom(event->pos());
}

void ColorSquare::mouseMoveEvent(QMouseEvent *event) {
    if (event->buttons() & Qt::LeftButton)
        takeFrom(event->pos());
}

void ColorSquare::keyPressEvent(QKeyEvent *event) {
    double saturation = m_saturation;
    double value = m_value;
    switch (event->key()) {
    case Qt::Key_Left:
        saturation -= KeyStep;
        break;
    case Qt::Key_Right:
        saturation += KeyStep;
        break;
    case Qt::Key_Up:
        value += KeyStep;
        break;
    case Qt::Key_Down:
        value -= KeyStep;
        break;
    default:
        QFrame::keyPressEvent(event);
        return;
    }
    select(qBound(0.0, saturation, 1.0), qBound(0.0, value, 1.0));
}

void ColorSquare::measure() {
    m_margin = frameWidth();
    m_squareWidth = width() - 2 * m_margin;
    m_squareHeight = height() - 2 * m_margin;
}

void ColorSquare::resizeEvent(QResizeEvent *event) {
    QFrame::resizeEvent(event);
    measure();
}

const QImage &ColorSquare::image() {
    const QSize size(m_squareWidth, m_squareHeight);
    if (m_image.size() == size && m_imageHue == m_hue)
        return m_image;
    m_image = QImage(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(m_image.scanLine(y));
        const double value = 1.0 - double(y) / size.height();
        for (int x = 0; x < size.width(); ++x)
            line[x] = QColor::fromHsvF(m_hue, double(x) / size.width(), value, 1.0).rgb();
    }
    m_imageHue = m_hue;
    return m_image;
}

void ColorSquare::paintEvent(QPaintEvent *event) {
    QFrame::paintEvent(event);
    measure();
    if (m_squareWidth <= 0 || m_squareHeight <= 0)
        return;
    const QRect square(m_margin, m_margin, m_squareWidth, m_squareHeight);
    QPainter painter(this);
    painter.drawImage(square.topLeft(), image());
    painter.setClipRect(square);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre(m_margin + m_cursorX * m_squareWidth, m_margin + m_cursorY * m_squareHeight);
    // Two rings, one of which stands out from every colour.
    const bool light = qGray(color().rgb()) > LightGray;
    painter.setPen(QPen(light ? Qt::white : Qt::black, 1.0));
    painter.drawEllipse(centre, CursorRadius + 1.0, CursorRadius + 1.0);
    painter.setPen(QPen(light ? Qt::black : Qt::white, 1.5));
    painter.drawEllipse(centre, CursorRadius, CursorRadius);
    if (!hasFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(StyleColors::instance().color(QStringLiteral("color13")));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(square.adjusted(0, 0, -1, -1));
}
