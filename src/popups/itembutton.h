#pragma once

#include <QPushButton>

/// A button without a frame of its own, with the pointing-hand cursor: what the style sheet selects.
class ItemButton : public QPushButton {
    Q_OBJECT
public:
    explicit ItemButton(QWidget *parent = nullptr);
};
