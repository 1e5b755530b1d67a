#pragma once

#include <QColor>
#include <QFrame>
#include <QImage>

/// The square of the free colour picker: saturation from left to right, value from bottom to top, in one
/// hue.
///
/// The mouse chooses, and the arrow keys move the choice by a hundredth. Hue, saturation, value and the
/// cursor's position are all from 0.0 to 1.0; a position of the widget counts from inside its frame.
class ColorSquare : public QFrame {
    Q_OBJECT
public:
    explicit ColorSquare(QWidget *parent = nullptr);

    /// Opaque. The very colour that was set, or the one that the last change led to.
    QColor color() const;
    double hue() const { return m_hue; }
    double saturation() const { return m_saturation; }
    double value() const { return m_value; }
    /// Where the cursor stands: saturation, and value from the top.
    QPointF cursorPosition() const { return {m_cursorX, m_cursorY}; }

public slots:
    /// Shows another colour. A gray one has no hue of its own and leaves the hue as it is.
    void SetColor(QColor color);
    void SetHue(double h);
    void SetSaturation(double s);
    void SetValue(double v);

signals:
    /// Whenever another colour is shown.
    void colorChanged(QColor color);
    /// When the user has pointed at a colour, after `colorChanged`.
    void colorSelected(QColor color);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void takeFrom(QPoint position);
    void select(double saturation, double value);
    void changed();
    void measure();
    const QImage &image();

    double m_hue = 0.0;
    double m_saturation = 1.0;
    double m_value = 1.0;
    double m_cursorX = 1.0;
    double m_cursorY = 0.0;
    int m_squareWidth = 0;
    int m_squareHeight = 0;
    int m_margin = 0;
    QColor m_exactColor;
    QImage m_image;
    double m_imageHue = -1.0;
};
