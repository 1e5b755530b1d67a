#include "services/workfolder.h"

#include "platform/folderaccess.h"
#include "platform/namedlock.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>

namespace {

/// The product's folder below `base`, or an empty string when it cannot be had. The vendor's folder must be
/// private too: whoever owns it could put another folder in the place of ours.
QString privateFolderBelow(const QString &base) {
    if (base.isEmpty())
        return QString();
    const QString vendorFolder = base + QStringLiteral("/Norvane");
    const QString folder = vendorFolder + QStringLiteral("/Tindra");
    const bool isUsable = platform::makePrivateFolder(vendorFolder) && platform::makePrivateFolder(folder) &&
                          isDirectoryWritable(folder);
    return isUsable ? folder : QString();
}

QString parentOf(const QString &path) {
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

} // namespace

QString workFolder() {
    const QString bases[] = {
        parentOf(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)),
        QStandardPaths::writableLocation(QStandardPaths::TempLocation),
        QStandardPaths::writableLocation(QStandardPaths::HomeLocation),
    };
    for (const QString &base : bases) {
        const QString folder = privateFolderBelow(base);
        if (!folder.isEmpty())
            return folder;
    }
    return QString();
}

QString realPath(const QString &path) {
    const QFileInfo named(path);
    // What is written to a link without a file lands where it leads.
    const QFileInfo file(named.isSymLink() && !named.exists() ? named.symLinkTarget() : path);
    const QString real = file.canonicalFilePath();
    if (!real.isEmpty())
        return real;
    const QString folder = QFileInfo(file.path()).canonicalFilePath();
    if (!folder.isEmpty())
        return QDir(folder).filePath(file.fileName());
    QString ancestor = file.path();
    while (!QFileInfo::exists(ancestor) && QFileInfo(ancestor).path() != ancestor)
        ancestor = QFileInfo(ancestor).path();
    return QFileInfo(ancestor).canonicalFilePath();
}

bool isInWorkFolder(const QString &path) {
    const QString folder = QFileInfo(workFolder()).canonicalFilePath();
    const auto isWithin = [&folder](const QString &place) {
        return !folder.isEmpty() && (place == folder || place.startsWith(folder + QLatin1Char('/')));
    };
    const QFileInfo file(path);
    return isWithin(realPath(path)) || (file.isSymLink() && isWithin(realPath(file.path())));
}

bool ownsWorkFolder() {
    // Waits a little: the editor before this one may just be ending.
    static platform::NamedLock lock(QStringLiteral("Tindra"), workFolder());
    static const bool owns = lock.lock();
    return owns;
}
