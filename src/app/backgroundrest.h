#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

class QWidget;

/// Tells when the program has gone to the background to stay there: the window has been hidden for a while,
/// so that what takes a moment disturbs nobody. A window that was never shown has not gone anywhere.
class BackgroundRest : public QObject {
public:
    /// `begin` is called once for each rest, on the window's thread. The window is not owned and may go
    /// first.
    BackgroundRest(QWidget *window, std::chrono::milliseconds wait, std::function<void()> begin);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTimer m_wait;
};
