#pragma once

#include "popups/popup.h"

#include <QColor>

class ColorPreview;
class ColorSquare;
class GradientSlider;
class QLineEdit;
class QPushButton;

/// The free choice of an opaque colour: by a bar of hues, a square of saturation and value, or as
/// hexadecimal digits.
class ColorPicker : public Popup {
    Q_OBJECT
public:
    explicit ColorPicker(QWidget *parent = nullptr);

    QColor color() const;
    /// Shows that colour everywhere; one that is invalid or not opaque is ignored.
    void setColor(const QColor &color);

public slots:
    /// What the user typed, number sign included.
    void onTextEdited(QString text);
    /// The square shows another colour.
    void onColorSelected(QColor color);

signals:
    /// "Ok" was pressed.
    void colorSelected(QColor color);

protected:
    QWidget *firstFocus() const override;

private:
    void build();
    void connectParts();
    void onHueMoved(int degrees);
    void showText(const QString &text);
    void confirm();

    QPushButton *m_ok;
    QPushButton *m_cancel;
    QLineEdit *m_hexEdit;
    ColorSquare *m_square;
    GradientSlider *m_slider;
    ColorPreview *m_preview;
};
