#pragma once

#include <QColor>
#include <QPushButton>

/// A tab that shows the colour chosen on its page, in front of its text.
class ColorSelectTabButton : public QPushButton {
    Q_OBJECT
public:
    explicit ColorSelectTabButton(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};
