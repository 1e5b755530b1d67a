#include "app/temporaryfiles.h"

#include "services/workfolder.h"

#include <QDir>

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

void removeTemporaryFiles() {
    const QString path = workFolder();
    if (path.isEmpty() || !ownsWorkFolder())
        return;
    QDir folder(path);
    const QStringList captures = folder.entryList({CapturePattern}, QDir::Files);
    for (const QString &capture : captures)
        folder.remove(capture);
    QDir(folder.filePath(QStringLiteral("AIRemoveBeta"))).removeRecursively();
}
