#include "app/commandexecutor.h"

#include "app/commandline.h"
#include "app/tindraeditor.h"
#include "ipc/capturemessages.h"
#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"
#include "services/tracelog.h"

namespace {
const auto tag = QStringLiteral("treatCommand");
}

void CommandExecutor::execute(const CommandLine &line) const {
    if (line.parseFailed)
        return;
    runMainAction(line);
    runSaveAction(line);
}

void CommandExecutor::runMainAction(const CommandLine &line) const {
    using Action = CommandLine::MainAction;
    switch (line.mainAction()) {
    case Action::Close:
        m_window->onClickClose();
        break;
    case Action::Kill:
        m_window->kill();
        break;
    case Action::Show:
        show();
        break;
    case Action::Hide:
        hide();
        break;
    case Action::UpdatePref:
        updatePreference(line);
        break;
    case Action::AddImage:
        addImage(line);
        break;
    case Action::About:
        m_window->onClickAbout(false);
        break;
    case Action::Preference:
        m_window->onClickPreference(line.preferencePage, false);
        break;
    case Action::None:
        break;
    }
}

void CommandExecutor::runSaveAction(const CommandLine &line) const {
    switch (line.saveAction()) {
    case CommandLine::SaveAction::AutoSave:
        emit m_window->saveCurrentImage(true, !line.skip);
        if (line.skip)
            PostMessageToTindra(CaptureMessage::SilentCaptureSaved, 0, 0);
        break;
    case CommandLine::SaveAction::Save:
        emit m_window->saveCurrentImage(false, true);
        break;
    case CommandLine::SaveAction::None:
        break;
    }
}

void CommandExecutor::show() const {
    trace(2, tag, "show");
    m_window->bringUp();
    m_window->tellAboutRestoredCaptures();
    PostMessageToTindra(CaptureMessage::BroughtUp, 0, 0);
    PostMessageToTindra(CaptureMessage::ShownForCapture, 0, 0);
}

void CommandExecutor::hide() const {
    if (m_window->isHideBlocked()) {
        trace(2, tag, "block hide");
        return;
    }
    trace(2, tag, "hide");
    if (!m_window->isVisible())
        m_window->postHidden();
    m_window->hide();
}

void CommandExecutor::updatePreference(const CommandLine &line) const {
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->SetBool(line.prefId, line.prefValue);
    // Saving by itself and asking for a file exclude each other.
    if (line.prefId == TindraPreferences::AutoSave && line.prefValue)
        preferences->SetBool(TindraPreferences::ShowFileDlgAfterCapture, false);
}

void CommandExecutor::addImage(const CommandLine &line) const {
    if (line.memory)
        ImageProvider::instance()->loadFromMemory(line.path, line.memorySize);
    m_window->AddNewPixmap(line.path, line.point, line.skip);
}
