#include "services/programfolder.h"

#include "services/signedlibrary.h"

#include <QCoreApplication>
#include <QDir>

namespace {

QString &substitute() {
    static QString folder;
    return folder;
}

} // namespace

QString programFolder() {
    return substitute().isEmpty() ? QCoreApplication::applicationDirPath() : substitute();
}

void setProgramFolder(const QString &path) {
    substitute() = path;
}

QString libraryInProgramFolder(const QString &baseName) {
    return QDir(programFolder()).filePath(libraryFileName(baseName));
}
