#include "ui/throttlefunc.h"

#include <QDateTime>

ThrottleFunc::ThrottleFunc(std::function<void()> callable, int interval, bool trailing, QObject *parent)
    : QObject(parent), m_callable(std::move(callable)), m_interval(interval), m_trailing(trailing),
      m_clock(&QDateTime::currentMSecsSinceEpoch) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one may run early
    connect(&m_timer, &QTimer::timeout, this, &ThrottleFunc::onTimeout);
}

void ThrottleFunc::setClock(Clock clock) {
    m_clock = std::move(clock);
}

void ThrottleFunc::call() {
    const qint64 now = m_clock();
    // A clock that was set back makes the difference negative, which counts as inside the interval too.
    if (m_running && now - m_lastCall < m_interval) {
        if (m_trailing)
            m_pending = true;
        return;
    }
    m_callable();
    m_lastCall = now;
    m_running = true;
    if (m_trailing)
        m_timer.start(m_interval);
}

void ThrottleFunc::onTimeout() {
    if (!m_pending) {
        m_running = false;
        return;
    }
    m_callable();
    m_lastCall = m_clock();
    m_pending = false;
    m_timer.start(m_interval);
}
