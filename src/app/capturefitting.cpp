#include "app/capturefitting.h"

#include "ui/windowplacement.h"

#include <QEvent>
#include <QWidget>

namespace {
// Milliseconds. Later the user may have moved the window already; some desktops have no frames at all.
constexpr int FramePatience = 1000;
} // namespace

CaptureFitting::CaptureFitting(QWidget *window) : QObject(window), m_window(window) {
    m_patience.setSingleShot(true);
    m_patience.setInterval(FramePatience);
    connect(&m_patience, &QTimer::timeout, this, [this] { m_awaitingFrame.reset(); });
    window->installEventFilter(this);
}

// The platform measures the frame against a window that may be on its way to another size; a frame that is
// smaller than what it holds is no answer.
QSize CaptureFitting::frame() const {
    return (m_window->frameGeometry().size() - m_window->size()).expandedTo(QSize(0, 0));
}

void CaptureFitting::apply(CaptureFit fit) {
    m_awaitingFrame.reset();
    fit.frame = frame();
    m_window->setGeometry(fittedGeometry(fit));
    keepOnScreen(m_window);
    if (m_window->isVisible() && fit.frame.isNull()) {
        m_awaitingFrame = fit;
        m_patience.start();
    }
}

bool CaptureFitting::eventFilter(QObject *watched, QEvent *event) {
    const bool told = event->type() == QEvent::Move || event->type() == QEvent::WindowActivate;
    if (m_awaitingFrame && told && !frame().isNull())
        apply(CaptureFit(*m_awaitingFrame)); // a copy, since the call begins by forgetting it
    return QObject::eventFilter(watched, event);
}
