#pragma once

#include <QPushButton>

/// The button that leaves things as they are. The class is what the style sheet selects.
class NegativeButton : public QPushButton {
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};
