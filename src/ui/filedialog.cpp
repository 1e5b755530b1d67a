#include "ui/filedialog.h"

#include "ui/fileicons.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString nearestFolder(const QString &folder) {
    if (!QDir::isAbsolutePath(folder))
        return QDir::homePath();
    QString nearest = QDir::cleanPath(folder);
    while (!QFileInfo(nearest).isDir()) {
        nearest = QFileInfo(nearest).path();
        if (QDir(nearest).isRoot())
            return QDir::homePath();
    }
    return nearest;
}

} // namespace

FileDialog::FileDialog(QWidget *parent, const QString &title) : QFileDialog(parent, title) {
    // Ahead of all other settings, which would go to the desktop's.
    setOption(DontUseNativeDialog);
    setIconProvider(FileIcons::instance());
}

QString FileDialog::askPath() {
    return exec() == Accepted ? chosenPath() : QString();
}

void FileDialog::beginIn(const QString &folder) {
    setDirectory(nearestFolder(folder));
}

QString FileDialog::chosenPath() const {
    return selectedFiles().value(0);
}

QString FileDialog::askFolder(QWidget *parent, const QString &title, const QString &folder) {
    FileDialog dialog(parent, title);
    dialog.setFileMode(Directory);
    dialog.setOption(ShowDirsOnly);
    dialog.beginIn(folder);
    return dialog.askPath();
}
