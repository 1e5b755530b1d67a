#include "history/imagessetaside.h"

#include "canvas/editor.h"
#include "ipc/imageprovider.h"
#include "output/imagewriter.h"
#include "services/workfolder.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

constexpr QFileDevice::Permissions PrivateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Ends like every capture that an exit clears away and that comes back after a crash.
QString newCapturePath(const QString &folder) {
    return QStringLiteral("%0/original-%1.png").arg(folder, QUuid::createUuid().toString(QUuid::Id128));
}

/// Whether the picture of that key stands under the path, as far as there is one.
bool copyImage(const QString &key, const QString &path) {
    if (QFileInfo(key).isFile()) {
        if (!QFile::copy(key, path))
            return false;
        QFile::setPermissions(path, PrivateFile);
        return true;
    }
    // It came through memory, or its file has been taken away while it was shown.
    const QPixmap image = ImageProvider::instance()->pixmap(key);
    return image.isNull() || writePinImage(image.toImage(), path);
}

} // namespace

ImagesSetAside::ImagesSetAside(const QVector<Editor *> &captures) {
    if (captures.isEmpty())
        return;
    const QString folder = workFolder();
    m_areWhole = !folder.isEmpty();
    for (Editor *editor : captures) {
        if (!m_areWhole)
            return;
        const QString path = newCapturePath(folder);
        m_areWhole = copyImage(editor->imageKey(), path);
        m_copies.append({editor, path});
    }
}

ImagesSetAside::~ImagesSetAside() {
    for (const Copy &copy : qAsConst(m_copies))
        QFile::remove(copy.path);
}

void ImagesSetAside::replaceOriginals() {
    for (const Copy &copy : qAsConst(m_copies)) {
        ImageProvider::instance()->forget(copy.editor->imageKey());
        copy.editor->abandonImage();
        copy.editor->setImageKey(copy.path);
    }
    m_copies.clear();
}
