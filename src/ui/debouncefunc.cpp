#include "ui/debouncefunc.h"

DebounceFunc::DebounceFunc(std::function<void()> callable, int interval, QObject *parent)
    : QObject(parent), m_callable(std::move(callable)), m_interval(interval) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one may run early
    connect(&m_timer, &QTimer::timeout, this, &DebounceFunc::onTimeout);
}

void DebounceFunc::call() {
    m_timer.start(m_interval);
}

void DebounceFunc::onTimeout() {
    if (m_callable)
        m_callable();
}
