#include "app/showsteps.h"

#include "app/aitoolscoachmark.h"
#include "app/managementprogramoffer.h"
#include "app/toolbar.h"
#include "popups/toolbutton.h"
#include "services/accountlibrary.h"

#include <QTimer>

ShowSteps::ShowSteps(QWidget *window, Toolbar *toolbar) : QObject(window), m_window(window) {
    ToolButton *button = toolbar->aiToolsButton();
    if (!button)
        return;
    m_coachmark = new AiToolsCoachmark(button, window);
    connect(toolbar, &Toolbar::laidOut, m_coachmark, &AiToolsCoachmark::follow);
}

void ShowSteps::onShow() {
    if (!m_wasShown)
        AccountLibrary::refreshUserGrade(AccountLibrary::AtFirstShow);
    m_wasShown = true;
    QTimer::singleShot(0, this, &ShowSteps::onShown);
}

void ShowSteps::onShown() {
    // It may be hidden again by now, or gone for good.
    if (!m_window->isVisible())
        return;
    if (m_coachmark)
        m_coachmark->show();
    if (!m_wasOffered) {
        m_wasOffered = true;
        ManagementProgramOffer::makeIfMissed(m_window);
    }
}
