#include "output/postsavedialog.h"

#include "output/clipboard.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

PostSaveDialog::PostSaveDialog(Type type, QWidget *parent) : MessageDialog(parent), m_type(type) {
    setTitle(tr("Tindra"));
    setIcon(Success);
    setText(tr("Saved captured image."));
    setCheckBox(tr("Skip"));
    QAbstractButton *openImage = addButton(tr("Open Image(&V)"), OpenImage, Positive, true);
    QAbstractButton *openFolder = addButton(tr("Open Folder(&O)"), OpenFolder, Positive);
    addButton(tr("Close"), Closed, Negative);
    setCloseResult(Closed);
    connect(openImage, &QAbstractButton::clicked, this, &PostSaveDialog::onClickOpenImage);
    connect(openFolder, &QAbstractButton::clicked, this, &PostSaveDialog::onClickOpenFolder);
}

void PostSaveDialog::setSavedPath(const QString &path) {
    m_path = path;
    setInformativeText(m_type == Batch ? QFileInfo(path).absolutePath() : path);
}

void PostSaveDialog::setCount(int count) {
    setText(tr("Saved captured %0 images.").arg(count));
}

bool PostSaveDialog::isSkipChecked() const {
    return isCheckBoxChecked();
}

void PostSaveDialog::onClickOpenImage() {
    QDesktopServices::openUrl(QUrl::fromUserInput(m_path));
}

void PostSaveDialog::onClickOpenFolder() {
    showInFileManager(m_path);
}
