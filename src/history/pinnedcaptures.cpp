// What of the panel outlives the process: the pinned captures, as numbered files.
#include "canvas/editor.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "platform/folderaccess.h"
#include "services/tracelog.h"
#include "services/workfolder.h"

#include <QDir>
#include <QFile>
#include <QSignalBlocker>

namespace {

const QLatin1String PinFolder("/pin");
constexpr QFileDevice::Permissions PrivateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString numberedPath(const QString &folder, int number) {
    return QStringLiteral("%0/%1.png").arg(folder, QString::number(number));
}

/// Pins whose writing was killed: private pictures that nothing else would ever find.
QStringList unfinishedFiles(const QDir &folder) {
    QStringList paths;
    const QStringList names = folder.entryList({QStringLiteral("*.png.??????")}, QDir::Files);
    for (const QString &name : names)
        paths.append(folder.absoluteFilePath(name));
    return paths;
}

/// The picture as it was captured becomes the pinned one, for which even a full disk has room.
void keepAsPin(const Editor *editor, const QString &path) {
    if (!editor->imageExists() || editor->imageRect().isEmpty())
        return;
    if (QFile::rename(editor->imageKey(), path))
        QFile::setPermissions(path, PrivateFile);
}

} // namespace

void HistoryWidget::SavePinnedHistories() {
    const QString tag = QStringLiteral("SavePinnedHistories");
    removePinnedFiles();
    const QString work = workFolder();
    if (work.isEmpty()) {
        trace(1, tag, "Cannot access any temp path");
        return;
    }
    const QString folder = work + PinFolder;
    if (!platform::makePrivateFolder(folder))
        return;
    const int pinned = m_historyListWidget->pinnedCount(nullptr);
    for (int row = 0; row < pinned; ++row) {
        const QString path = numberedPath(folder, row);
        trace(2, tag, "%ls", path.utf16());
        Editor *editor = m_historyListWidget->rowItem(row)->editor();
        if (!editor->savePinImage(path)) {
            trace(1, tag, "Failed to save [%ls]", path.utf16());
            keepAsPin(editor, path);
        }
    }
}

QStringList HistoryWidget::pinnedFilePaths() const {
    const QString work = workFolder();
    if (work.isEmpty())
        return {};
    const QDir folder(work + PinFolder);
    QStringList paths;
    // Broken links too: a picture written to one would land where it leads.
    const QStringList names = folder.entryList({QStringLiteral("*.png")}, QDir::Files | QDir::System);
    for (const QString &name : names)
        paths.append(folder.absoluteFilePath(name));
    return paths;
}

void HistoryWidget::removePinnedFiles() {
    const QString work = workFolder();
    if (work.isEmpty())
        return;
    const QDir folder(work + PinFolder);
    const QStringList paths = pinnedFilePaths() + unfinishedFiles(folder);
    for (const QString &path : paths)
        QFile::remove(path);
}

QStringList HistoryWidget::restorePinnedImages() {
    const QString work = workFolder();
    const QStringList paths = pinnedFilePaths();
    QStringList copies;
    for (int i = 0; i < paths.size(); ++i) {
        const QString copy = numberedPath(work, i);
        const QFileInfo pinned(paths[i]);
        // A link would take a file from elsewhere in; a pipe would never end.
        if (pinned.isSymLink() || !pinned.isFile() || !QFile::copy(paths[i], copy))
            continue;
        QFile::setPermissions(copy, PrivateFile);
        copies.append(copy);
    }
    return copies;
}

void HistoryWidget::setPinnedImages(bool pinned, int rows) {
    const int count = pinned ? qMin(rows, m_historyListWidget->count()) //
                             : m_historyListWidget->pinnedCount(nullptr);
    for (int row = count - 1; row >= 0; --row) {
        HistoryButtonWidget *widget = m_historyListWidget->rowWidget(m_historyListWidget->rowItem(row));
        // A pin that the list hears of moves its row to the top.
        const QSignalBlocker inPlace(widget);
        widget->setPinned(pinned);
    }
}
