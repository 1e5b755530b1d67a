#include "app/exitroutine.h"

#include "app/temporaryfiles.h"
#include "history/historywidget.h"
#include "ipc/capturemessages.h"
#include "preferences/tindrapreferences.h"
#include "ui/messagedialog.h"
#include "ui/windowplacement.h"

#include <QApplication>
#include <QWidget>

namespace {

constexpr int LookAgainMs = 100;

} // namespace

ExitRoutine::ExitRoutine(QWidget *window, HistoryWidget *history)
    : QObject(window), m_window(window), m_history(history) {
    m_lookAgain.setSingleShot(true);
    m_lookAgain.setInterval(LookAgainMs);
    // A dialog may open inside the save that is waited for.
    connect(&m_lookAgain, &QTimer::timeout, this, [this] {
        if (m_isHeld && (m_killRequested || m_history->isWritingImages()))
            start();
    });
    // A kill does not wait for what the user is told of a save; an exit that asks would ask under it.
    connect(m_history, &HistoryWidget::imagesWritten, this, [this] {
        if (m_isHeld && m_killRequested)
            start();
    });
    connect(m_history, &HistoryWidget::imagesReported, this, [this] {
        if (m_isHeld)
            start();
    });
}

void ExitRoutine::start() {
    if (m_isQueued || m_left)
        return;
    m_isQueued = true;
    QTimer::singleShot(0, this, &ExitRoutine::run);
}

void ExitRoutine::run() {
    m_isQueued = false;
    // A save processes events while it writes. An exit in its middle would ask about what is just being
    // saved or delete what is still to be written, and the next editor would find the work folder of a killed
    // one in use. Under a dialog the save goes no further before that is closed: there an exit is refused,
    // and a kill closes it.
    m_isHeld = m_history->isWritingImages() && !QApplication::activeModalWidget();
    if (m_isHeld) {
        m_lookAgain.start();
        return;
    }
    // Read before the question: a further request while it is open is refused and takes the flag back.
    const bool exitRequested = m_exitRequested;
    const bool confirmed = confirm();
    // A kill, or the end of the session, may have come while the question was open.
    if (m_left)
        return;
    if (!confirmed) {
        m_exitRequested = false;
        return;
    }
    PostMessageToTindra(CaptureMessage::ProgramEnds, 0, 0);
    m_window->hide();
    leave(exitRequested && !m_killRequested ? End::Exit : End::Kill);
}

bool ExitRoutine::confirm() {
    // What is being written must stay, saved before or not.
    if (m_killRequested || !(m_history->hasUnsavedImages() || m_history->isWritingImages()))
        return true;
    if (QWidget *modal = QApplication::activeModalWidget()) {
        modal->activateWindow();
        modal->raise();
        return false;
    }
    return askAboutUnsavedImages();
}

bool ExitRoutine::askAboutUnsavedImages() {
    constexpr int Yes = 1;
    constexpr int No = 2;
    m_window->show();
    bringToFront(m_window);
    PostMessageToTindra(CaptureMessage::BroughtUp, 0, 0);
    MessageDialog dialog(m_window);
    dialog.setTitle(tr("Tindra"));
    dialog.setIcon(MessageDialog::Question);
    dialog.setText(tr("Unsaved images exist in history.\nWould you exit tindra?"));
    dialog.setInformativeText(tr("If you exit, it will remove all images in history."));
    dialog.addButton(tr("&Yes"), Yes, MessageDialog::Positive, true);
    dialog.addButton(tr("&No"), No, MessageDialog::Negative);
    dialog.setCloseResult(No);
    return dialog.exec() == Yes;
}

void ExitRoutine::endSession() {
    if (m_left)
        return;
    PostMessageToTindra(CaptureMessage::ProgramEnds, 0, 0);
    leave(End::Session);
}

QStringList ExitRoutine::keptPictures() {
    const QStringList notWritten = m_history->SavePinnedHistories();
    return notWritten + m_history->pinnedFilePaths();
}

// Pinned captures are written before the files that they come from go. Order matters to those who watch too:
// first nothing more is taken on, then files, then the settings, then the services, then the end of the loop.
// A desktop that ends may not wait that long, so there the settings come first: files that are left over come
// back at the next start, settings do not.
void ExitRoutine::leave(End end) {
    m_left = true;
    // Listed before the door closes: what comes into the folder afterwards is the next editor's.
    QStringList files = end == End::Kill ? QStringList() : filesToClear() + m_history->imageFiles();
    emit leaving();
    if (end != End::Kill)
        files = withoutFiles(files, keptPictures());
    if (end == End::Exit)
        removeTemporaryFiles(files);
    TindraPreferences::instance()->SaveAll();
    emit servicesEnding();
    // What a save still has to write comes back at the next start instead, if it lies in the work folder;
    // from elsewhere it stays where it is.
    if (end == End::Session && !m_history->isWritingImages())
        removeTemporaryFiles(files);
    QCoreApplication::quit();
}
