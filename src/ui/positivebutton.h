#pragma once

#include <QPushButton>

/// The button that goes ahead. The class is what the style sheet selects.
class PositiveButton : public QPushButton {
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};
