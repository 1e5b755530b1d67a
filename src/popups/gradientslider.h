#pragma once

#include <QColor>
#include <QList>
#include <QSlider>

/// A vertical slider in front of a bar of colours, the largest value at the top.
///
/// A press takes the handle to the mouse at once. The round handle shows the hue of the value, so the
/// values are degrees.
class GradientSlider : public QSlider {
    Q_OBJECT
    /// Width of the handle's outline, in device pixels.
    Q_PROPERTY(int handleWidth READ handleWidth WRITE setHandleWidth)
public:
    explicit GradientSlider(QWidget *parent = nullptr);

    /// The colours from top to bottom, evenly spread; at first black and white.
    QList<QColor> gradient() const { return m_gradient; }
    void setGradient(const QList<QColor> &colors);

    int handleWidth() const { return m_handleWidth; }
    void setHandleWidth(int width);

    /// The bar, in widget coordinates.
    QRectF grooveRect() const;
    /// The middle of the handle at the present value.
    QPointF handleCentre() const;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double handleRadius() const;
    int valueAt(double y) const;

    QList<QColor> m_gradient{Qt::black, Qt::white};
    int m_handleWidth = 2;
};
