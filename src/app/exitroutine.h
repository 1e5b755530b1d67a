#pragma once

#include <QObject>
#include <QTimer>

class HistoryWidget;
class QWidget;

/// Decides whether a close of the main window ends the program, asks about unsaved captures, and carries
/// out the end step by step. An end that is asked for while captures are written waits for that.
///
/// An exit keeps the pinned captures for the next start and deletes the others. A kill (an update, a
/// termination signal) asks nothing and deletes nothing, whatever else was requested, so that the next start
/// brings them all back.
class ExitRoutine : public QObject {
    Q_OBJECT
public:
    /// Both are borrowed and outlive this object.
    ExitRoutine(QWidget *window, HistoryWidget *history);

    void requestExit() { m_exitRequested = true; }
    void requestKill() { m_killRequested = true; }
    bool isRequested() const { return m_exitRequested || m_killRequested; }

    /// Whether the end has been carried out. An event loop that begins after that does not know of it.
    bool hasLeft() const { return m_left; }

    /// Runs in the next turn of the event loop: an event handler of the window must have returned first.
    void start();
    /// The end of the user's session: the same steps without a question, at once.
    void endSession();

signals:
    /// The end is certain and begins now: nothing more must be taken on.
    void leaving();
    /// What serves the program around the editor must end now: nothing is reported any more.
    void servicesEnding();

private:
    enum class End { Exit, Kill, Session };

    void run();
    bool confirm();
    bool askAboutUnsavedImages();
    void leave(End end);
    /// Writes the pinned captures. Returns the files from which the next start, or the user, gets them back.
    QStringList keptPictures();

    QWidget *m_window;
    HistoryWidget *m_history;
    bool m_exitRequested = false;
    bool m_killRequested = false;
    bool m_isQueued = false;
    bool m_isHeld = false; ///< until captures are written
    QTimer m_lookAgain;    ///< while held
    bool m_left = false;
};
