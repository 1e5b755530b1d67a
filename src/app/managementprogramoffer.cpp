#include "app/managementprogramoffer.h"

#include "services/managementprogram.h"
#include "ui/messagedialog.h"

#include <QDesktopServices>
#include <QUrl>

void ManagementProgramOffer::makeIfMissed(QWidget *window) {
    if (ManagementProgram::isMissed()) {
        make(window, tr("Brindlehub (the management program of Brindle) is not installed.\n"
                        "Would you like to install it now?"));
    }
}

void ManagementProgramOffer::make(QWidget *window, const QString &question) {
    const int answer = MessageDialog::information(window, tr("Tindra"), question,
                                                  MessageDialog::Yes | MessageDialog::No, MessageDialog::Yes);
    // The address comes from the translation, so that each language can have a page of its own.
    if (answer == MessageDialog::Yes)
        QDesktopServices::openUrl(QUrl(tr("https://www.brindle.example/download")));
}
