#pragma once

#include <QRect>

/// A further screen of the desktop, while it lives. For tests that draw off screen.
class SecondScreen {
public:
    explicit SecondScreen(const QRect &geometry);
    ~SecondScreen();
    SecondScreen(const SecondScreen &) = delete;
    SecondScreen &operator=(const SecondScreen &) = delete;

private:
    class Screen;
    Screen *m_screen; ///< owned by the toolkit once it is known there
};
