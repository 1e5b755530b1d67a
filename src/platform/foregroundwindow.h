#pragma once

class QWindow;

/// Bringing a window of ours in front of the windows of other programs.
class ForegroundWindow {
public:
    virtual ~ForegroundWindow() = default;

    /// Raises and activates the window, also against a window manager that protects the focus.
    virtual void bringToFront(QWindow *window) = 0;
};
