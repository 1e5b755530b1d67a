#include "app/temporaryfiles.h"

#include "services/workfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

const auto CapturePattern = QStringLiteral("*.png");
// What copies are called until they are whole, our own and those of tindra-send. One that was killed leaves a
// picture behind that nobody would find.
const auto UnfinishedCopyPattern = QStringLiteral("qt_temp.??????");
const auto UnfinishedCapturePattern = QStringLiteral("*.png.part");

/// Whether a pinned capture may come back under that name, which is then its number.
bool isNumbered(const QFileInfo &file) {
    const QString name = file.completeBaseName();
    return !name.isEmpty() &&
           std::all_of(name.begin(), name.end(), [](const QChar &character) { return character.isDigit(); });
}

/// A pin comes back under its number, unless a file has that name. If the editor is killed while it clears
/// up, a number that is still taken would keep a pin away; so all of them are given up before the first file
/// goes.
QStringList withoutNumbers(const QStringList &files) {
    QStringList renamed;
    for (const QString &path : files) {
        const QFileInfo file(path);
        const QString aside = file.dir().filePath(QStringLiteral("left-") + file.fileName());
        renamed.append(isNumbered(file) && QFile::rename(path, aside) ? aside : path);
    }
    return renamed;
}

/// Those that hold what the AI tools got to work on. A link leads to somebody else's.
QStringList pluginFolders(const QDir &folder) {
    return folder.entryList({QStringLiteral("capture_*"), QStringLiteral("AIRemoveBeta")},
                            QDir::Dirs | QDir::NoSymLinks | QDir::Hidden);
}

/// Whether the file lies in the folder, of which the canonical path is given, or below it. A link counts
/// where it lies itself.
bool liesIn(const QString &folder, const QString &file) {
    const QString own = QFileInfo(QFileInfo(file).absolutePath()).canonicalFilePath();
    return !folder.isEmpty() && (own == folder || own.startsWith(folder + QLatin1Char('/')));
}

} // namespace

QStringList temporaryCaptures() {
    const QString path = workFolder();
    if (path.isEmpty())
        return {};
    const QDir folder(path);
    QStringList captures;
    const QStringList names = folder.entryList({CapturePattern}, QDir::Files | QDir::NoSymLinks);
    for (const QString &name : names)
        captures.append(folder.absoluteFilePath(name));
    return captures;
}

QStringList filesToClear() {
    const QString path = workFolder();
    if (path.isEmpty())
        return {};
    const QDir folder(path);
    QStringList files;
    const QStringList names =
        folder.entryList({CapturePattern, UnfinishedCopyPattern, UnfinishedCapturePattern}, QDir::Files);
    for (const QString &name : names)
        files.append(folder.absoluteFilePath(name));
    return files;
}

QStringList withoutFiles(const QStringList &paths, const QStringList &known) {
    if (known.isEmpty())
        return paths;
    const QStringList knownFiles = canonicalFiles(known);
    QStringList others;
    for (const QString &path : paths) {
        const QString file = QFileInfo(path).canonicalFilePath();
        if (file.isEmpty() || !knownFiles.contains(file))
            others.append(path);
    }
    return others;
}

QStringList canonicalFiles(const QStringList &paths) {
    QStringList files;
    for (const QString &path : paths)
        files.append(QFileInfo(path).canonicalFilePath());
    return files;
}

void removeTemporaryFiles(const QStringList &files) {
    const QString path = workFolder();
    const bool clearsFolder = !path.isEmpty() && ownsWorkFolder();
    const QString realFolder = QFileInfo(path).canonicalFilePath();
    QStringList inFolder;
    QStringList removable;
    for (const QString &file : files)
        (liesIn(realFolder, file) ? inFolder : removable).append(file);
    if (clearsFolder)
        removable += withoutNumbers(inFolder);
    for (const QString &file : qAsConst(removable))
        QFile::remove(file);
    if (!clearsFolder)
        return;
    const QDir folder(path);
    const QStringList folders = pluginFolders(folder);
    for (const QString &name : folders)
        QDir(folder.filePath(name)).removeRecursively();
}
