#include "ui/downloadandrun.h"

#include "platform/folderaccess.h"
#include "services/certificatetool.h"
#include "services/tracelog.h"
#include "ui/filedownloaddialog.h"

#include <QDesktopServices>
#include <QDir>
#include <QTemporaryFile>
#include <QUrl>

namespace {

bool fail(const char *format, const QString &what) {
    trace(1, QStringLiteral("DownloadAndRun"), format, what.utf16());
    return false;
}

/// The name of an empty file of our own, which is deleted with `file`. It is open to nobody else from the
/// start, and stands where nobody else can exchange it after the check.
QString makeTarget(QTemporaryFile *file) {
    const bool isSafe = platform::keepsOurEntries(QDir::tempPath());
    const QString name = isSafe && file->open() ? file->fileName() : QString();
    file->close();
    return name;
}

} // namespace

bool downloadAndRun(const QString &url, QWidget *parent) {
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/XXXXXX.exe"));
    const QString path = makeTarget(&file);
    if (path.isEmpty())
        return fail("[ERROR]Temporary file fail_(%ls)", file.fileTemplate());
    FileDownloadDialog dialog(url, path, parent);
    if (dialog.exec() != QDialog::Accepted)
        return fail("[ERROR]Download fail_(%ls)", url);
    if (!verifyFileSignature(path, true))
        return fail("[ERROR]Not signed by an accepted maker_(%ls)", url);
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return fail("[ERROR]Cannot be started_(%ls)", path);
    // The desktop may take its time to look at it.
    file.setAutoRemove(false);
    return true;
}
