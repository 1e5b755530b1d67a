#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

/// Runs a callable at once and then at most once every `interval` milliseconds while calls keep coming.
///
/// With `trailing`, calls inside the interval collapse into one more run at its end; without, they are
/// dropped. An empty callable raises `std::bad_function_call`. GUI thread only.
class ThrottleFunc : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<qint64()>;

    ThrottleFunc(std::function<void()> callable, int interval, bool trailing, QObject *parent);
    /// Milliseconds since the epoch from another source than the system's clock.
    void setClock(Clock clock);

    void call();

private slots:
    void onTimeout();

private:
    std::function<void()> m_callable;
    int m_interval;
    bool m_trailing;
    bool m_running = false;
    bool m_pending = false;
    qint64 m_lastCall = 0;
    QTimer m_timer{this};
    Clock m_clock;
};
