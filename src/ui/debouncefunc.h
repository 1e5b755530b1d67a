#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

/// Runs a callable once, `interval` milliseconds after the last of a burst of calls. GUI thread only.
class DebounceFunc : public QObject {
    Q_OBJECT
public:
    DebounceFunc(std::function<void()> callable, int interval, QObject *parent);

    void call();

private slots:
    void onTimeout();

private:
    std::function<void()> m_callable;
    int m_interval;
    QTimer m_timer{this};
};
