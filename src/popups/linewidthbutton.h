#pragma once

#include <QPushButton>

/// A button for one line width: a bar as thick as the line, and the width in pixels.
class LineWidthButton : public QPushButton {
    Q_OBJECT
public:
    explicit LineWidthButton(QWidget *parent = nullptr);

    /// The line width in image pixels.
    void setValue(int value);
    int value() const { return m_value; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_value = 0;
};
