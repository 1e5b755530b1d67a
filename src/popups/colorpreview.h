#pragma once

#include <QColor>
#include <QWidget>

/// A rectangle of one colour.
class ColorPreview : public QWidget {
    Q_OBJECT
public:
    explicit ColorPreview(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};
