// What of the panel outlives the process: the pinned captures, as numbered files.
#include "canvas/editor.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "platform/folderaccess.h"
#include "platform/privatefile.h"
#include "services/tracelog.h"
#include "services/workfolder.h"

#include <QDir>
#include <QFile>
#include <QSignalBlocker>

namespace {

const QLatin1String PinFolder("/pin");
const auto SaveTag = QStringLiteral("SavePinnedHistories");

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

/// Whether there is a picture in the capture's file; a broken one is nothing to come back to.
bool hasReadableFile(const Editor *editor) {
    return editor->imageExists() && !editor->imageRect().isEmpty();
}

bool moveToPin(const Editor *editor, const QString &path) {
    if (!QFile::rename(editor->imageKey(), path))
        return false;
    QFile::setPermissions(path, platform::PrivateFileRights);
    return true;
}

} // namespace

QStringList HistoryWidget::SavePinnedHistories() {
    const QString folder = emptiedPinFolder();
    const int pinned = m_historyListWidget->pinnedCount(nullptr);
    QStringList notKept;
    for (int row = 0; row < pinned; ++row) {
        Editor *editor = m_historyListWidget->rowItem(row)->editor();
        const bool isKept = !folder.isEmpty() && savePin(editor, numberedPath(folder, row));
        if (!isKept && hasReadableFile(editor))
            notKept.append(editor->imageKey());
    }
    return notKept;
}

bool HistoryWidget::savePin(Editor *editor, const QString &path) const {
    trace(2, SaveTag, "%ls", path.utf16());
    if (editor->savePinImage(path))
        return true;
    trace(1, SaveTag, "Failed to save [%ls]", path.utf16());
    // The picture as it was captured becomes the pinned one, for which even a full disk has room.
    return hasReadableFile(editor) && moveToPin(editor, path);
}

QString HistoryWidget::emptiedPinFolder() {
    const QString work = workFolder();
    if (work.isEmpty()) {
        trace(1, SaveTag, "Cannot access any temp path");
        return QString();
    }
    // The pictures there are those of another editor otherwise.
    if (!ownsWorkFolder())
        return QString();
    removePinnedFiles();
    const QString folder = work + PinFolder;
    return platform::makePrivateFolder(folder) ? folder : QString();
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
        QFile::setPermissions(copy, platform::PrivateFileRights);
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
