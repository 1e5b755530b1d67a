#pragma once

#include "popups/itembutton.h"

#include <QColor>

/// A swatch: a checkable button that stands for a colour, which may be transparent.
///
/// The style sheet draws the frame and, by its padding, says how large the colour is inside it.
class ColorSelectButton : public ItemButton {
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor)
public:
    explicit ColorSelectButton(QWidget *parent = nullptr);

    /// Invalid for a swatch without a colour, which paints none.
    QColor color() const { return m_color; }
    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};

/// Paints a colour as swatches show it: with a thin outline, so that white is seen on white, and full
/// transparency as a picture.
void paintColorChip(QPainter &painter, const QRect &rect, const QColor &color, bool enabled);
