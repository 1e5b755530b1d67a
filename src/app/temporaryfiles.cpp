#include "app/temporaryfiles.h"

#include "services/workfolder.h"

#include <QDir>

void removeTemporaryFiles() {
    const QString path = workFolder();
    if (path.isEmpty())
        return;
    QDir folder(path);
    const QStringList captures = folder.entryList({QStringLiteral("*.png")}, QDir::Files);
    for (const QString &capture : captures)
        folder.remove(capture);
    QDir(folder.filePath(QStringLiteral("AIRemoveBeta"))).removeRecursively();
}
