#include "app/aitoolscoachmark.h"

#include "preferences/tindrapreferences.h"
#include "ui/coachmarkwidget.h"

#include <QEvent>

namespace {

/// In percent of the bubble's width, so that most of it stands over the canvas to the right.
constexpr double ArrowPosition = 20;

} // namespace

AiToolsCoachmark::AiToolsCoachmark(QWidget *button, QWidget *window)
    : QObject(window), m_button(button),
      m_bubble(new CoachmarkWidget(TindraPreferences::OnceAiToolsCoachmark, window)) {
    m_bubble->setText(button->toolTip());
    m_bubble->setAnchor(button, CoachmarkWidget::BelowAnchor, ArrowPosition);
    button->installEventFilter(this);
}

void AiToolsCoachmark::show() {
    m_isWanted = true;
    follow();
}

void AiToolsCoachmark::follow() const {
    if (!m_bubble || !m_isWanted)
        return;
    m_bubble->place();
    m_bubble->setVisible(m_button->isVisible() && !m_bubble->wasClosed());
    m_bubble->raise();
}

bool AiToolsCoachmark::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        follow();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
