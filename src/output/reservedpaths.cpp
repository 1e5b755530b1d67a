#include "output/reservedpaths.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// A file stands here once for each time that it is reserved.
QStringList &reservedFiles() {
    static QStringList files;
    return files;
}

/// One text for all roads to the same name, also to one in a folder that is not there.
QString fileOf(const QString &path) {
    const QFileInfo file(path);
    const QString folder = QDir(file.path()).canonicalPath();
    return folder.isEmpty() ? QDir::cleanPath(file.absoluteFilePath())
                            : QDir(folder).filePath(file.fileName());
}

} // namespace

ReservedPaths::ReservedPaths(const QStringList &paths) {
    for (const QString &path : paths)
        m_files.append(fileOf(path));
    reservedFiles() += m_files;
}

ReservedPaths::~ReservedPaths() {
    for (const QString &file : qAsConst(m_files))
        reservedFiles().removeOne(file);
}

bool ReservedPaths::contains(const QString &path) {
    // Nearly always nothing is, and names are looked for by the hundred.
    return !reservedFiles().isEmpty() && reservedFiles().contains(fileOf(path));
}
