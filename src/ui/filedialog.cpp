#include "ui/filedialog.h"

#include "ui/fileicons.h"

#include <QFileInfo>

FileDialog::FileDialog(QWidget *parent, const QString &title) : QFileDialog(parent, title) {
    // Ahead of all other settings, which would go to the desktop's.
    setOption(DontUseNativeDialog);
    setIconProvider(FileIcons::instance());
}

QString FileDialog::askPath() {
    return exec() == Accepted ? chosenPath() : QString();
}

QString FileDialog::chosenPath() const {
    return selectedFiles().value(0);
}

QString FileDialog::askFolder(QWidget *parent, const QString &title, const QString &folder) {
    FileDialog dialog(parent, title);
    dialog.setFileMode(Directory);
    dialog.setOption(ShowDirsOnly);
    if (QFileInfo(folder).isDir())
        dialog.setDirectory(folder);
    return dialog.askPath();
}
