#pragma once

#include <QPushButton>

/// A button with a menu whose text keeps the padding of the style sheet.
class MenuPushButton : public QPushButton {
    Q_OBJECT
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent *event) override;
};
