#include "app/backgroundrest.h"

#include <QEvent>
#include <QWidget>

#include <utility>

BackgroundRest::BackgroundRest(QWidget *window, std::chrono::milliseconds wait, std::function<void()> begin) {
    m_wait.setSingleShot(true);
    m_wait.setInterval(wait);
    connect(&m_wait, &QTimer::timeout, this, std::move(begin));
    window->installEventFilter(this);
}

bool BackgroundRest::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Hide)
        m_wait.start();
    else if (event->type() == QEvent::Show)
        m_wait.stop();
    return QObject::eventFilter(watched, event);
}
