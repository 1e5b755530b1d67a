#pragma once

#include <QPushButton>

/// A push button with the pointing-hand cursor; a selector for the style sheet.
class ItemButton : public QPushButton {
    Q_OBJECT
public:
    explicit ItemButton(QWidget *parent = nullptr);
};
