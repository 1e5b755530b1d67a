#pragma once

#include <QObject>

class AiToolsCoachmark;
class Toolbar;
class QWidget;

/// What the shows of the main window bring along: the first one has the account's library ask anew what the
/// user may do, each points the user to the AI tools, and one, the first with time for it, offers the
/// management program where it is missed.
class ShowSteps : public QObject {
    Q_OBJECT
public:
    /// Both are borrowed and outlive this object.
    ShowSteps(QWidget *window, Toolbar *toolbar);

    /// The window's show event has come. What may ask the user waits until its handler has returned.
    void onShow();

private:
    void onShown();

    QWidget *m_window;
    AiToolsCoachmark *m_coachmark = nullptr; ///< null without AI tools
    bool m_wasShown = false;
    bool m_wasOffered = false;
};
