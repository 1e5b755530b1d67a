#include "app/temporaryfiles.h"

#include "services/workfolder.h"

#include <QDir>
#include <QFile>

namespace {
const auto CapturePattern = QStringLiteral("*.png");
}

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
    const QStringList names = folder.entryList({CapturePattern}, QDir::Files);
    for (const QString &name : names)
        files.append(folder.absoluteFilePath(name));
    return files;
}

void removeTemporaryFiles(const QStringList &files) {
    const QString path = workFolder();
    if (path.isEmpty() || !ownsWorkFolder())
        return;
    for (const QString &file : files)
        QFile::remove(file);
    QDir(QDir(path).filePath(QStringLiteral("AIRemoveBeta"))).removeRecursively();
}
