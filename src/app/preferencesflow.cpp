#include "app/preferencesflow.h"

#include "ipc/capturemessages.h"
#include "preferences/dialog/preferencesdialog.h"
#include "preferences/tindrapreferences.h"
#include "ui/windowplacement.h"

namespace {

// Bits of the closing message.
constexpr qint64 WasModal = 1;
constexpr qint64 HideButtonsTurnedOn = 2;

} // namespace

PreferencesFlow::PreferencesFlow(QWidget *window) : QObject(window), m_window(window) {}

void PreferencesFlow::open(int page, bool modal) {
    if (m_dialog) {
        takeToFront();
        return;
    }
    auto *dialog = new PreferencesDialog(m_window);
    m_dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::finished, this, [this, dialog, modal](int result) {
        onFinished(*dialog, result, modal);
        // It is deleted a little later, and the next request needs a new one.
        m_dialog = nullptr;
    });
    dialog->loadAll();
    dialog->selectPage(page);
    PostMessageToTindra(CaptureMessage::PreferencesOpened, 0, 0);
    if (modal)
        dialog->exec();
    else
        show();
}

void PreferencesFlow::show() const {
    // Its top left is where the main window's would be in the middle of the screen.
    centreOnScreen(m_dialog, m_window->size());
    keepOnScreen(m_dialog);
    m_dialog->show();
    // On a screen of many dots the dialog has grown only now.
    keepOnScreen(m_dialog);
    takeToFront();
}

void PreferencesFlow::takeToFront() const {
    // In front the dialog has the focus itself, which leads the keys nowhere.
    const QPointer<QWidget> field(m_dialog->focusWidget());
    bringToFront(m_dialog);
    if (field)
        field->setFocus(Qt::OtherFocusReason);
}

// The capture process reads the file when it is told, so the file comes first.
void PreferencesFlow::onFinished(const PreferencesDialog &dialog, int result, bool modal) {
    if (result == QDialog::Accepted)
        TindraPreferences::instance()->SaveAll();
    PostMessageToTindra(CaptureMessage::PreferencesClosed, quint64(result),
                        (modal ? WasModal : 0) | (dialog.hideButtonsTurnedOn() ? HideButtonsTurnedOn : 0));
}
