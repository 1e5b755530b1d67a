#include "app/restoredcaptures.h"

#include "app/temporaryfiles.h"
#include "history/historywidget.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "ui/messagedialog.h"

#include <QFileInfo>

#include <utility>

RestoredCaptures::RestoredCaptures(HistoryWidget *history, Add add)
    : m_history(history), m_add(std::move(add)) {}

bool RestoredCaptures::bringBack() {
    // The first command line may have brought a capture already; it lies in the work folder too, and it
    // stays in front.
    HistoryListWidgetItem *const shown = m_history->currentItem();
    QStringList leftOvers = withoutFiles(temporaryCaptures(), m_history->imageKeys());
    if (!leftOvers.isEmpty())
        m_isToBeTold = true;

    const int before = m_history->freeRows();
    bool allRead = add(m_history->restorePinnedImages());
    m_history->setPinnedImages(true, before - m_history->freeRows());
    // Where the oldest captures make room for new ones, the newest are those that stay in the end.
    if (TindraPreferences::instance()->GetBool(TindraPreferences::AutoHistoryDelete, false))
        leftOvers = leftOvers.mid(qMax(0, leftOvers.size() - m_history->freeRows()));
    m_leftOvers = canonicalFiles(leftOvers.mid(0, m_history->freeRows()));
    allRead = add(leftOvers) && allRead;

    if (shown)
        m_history->select(shown);
    return allRead;
}

bool RestoredCaptures::add(const QStringList &paths) {
    bool allRead = true;
    for (const QString &path : paths) {
        // A full list refuses a capture, or drops its oldest one together with the file.
        if (m_history->freeRows() == 0)
            break;
        allRead = m_add(path) && allRead;
    }
    return allRead;
}

bool RestoredCaptures::select(const QString &path) {
    const QString file = QFileInfo(path).canonicalFilePath();
    HistoryListWidgetItem *item = m_leftOvers.removeOne(file) ? m_history->itemOfFile(file) : nullptr;
    if (!item)
        return false;
    m_isToBeTold = m_isToBeTold && !m_leftOvers.isEmpty();
    m_history->select(item);
    return true;
}

void RestoredCaptures::tell(QWidget *parent) {
    if (!m_isToBeTold)
        return;
    recordUsage("cap_308_01");
    MessageDialog dialog(parent);
    dialog.setTitle(tr("Tindra"));
    dialog.setIcon(MessageDialog::Information);
    dialog.setText(tr("Temporarily saved recent capture list has been restored."));
    dialog.setInformativeText(tr("Part of the recent capture list is restored when Tindra is updated or "
                                 "abnormally terminated.\n\t\tPlease save important captured images safely "
                                 "in advance."));
    dialog.setStandardButtons(MessageDialog::Ok);
    m_isToBeTold = false;
    dialog.exec();
}
