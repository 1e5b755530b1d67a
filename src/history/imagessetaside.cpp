#include "history/imagessetaside.h"

#include "canvas/editor.h"
#include "ipc/imageprovider.h"
#include "output/imagewriter.h"
#include "platform/privatefile.h"
#include "services/workfolder.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

/// Ends like every capture that an exit clears away and that comes back after a crash.
QString newName() {
    return QStringLiteral("original-%0.png").arg(QUuid::createUuid().toString(QUuid::Id128));
}

/// Whether the picture of that key stands under the path, as far as there is one.
bool copyImage(const QString &key, const QString &path) {
    // A picture in memory may have a file of something else under its name.
    if (QFileInfo(key).isFile() && !ImageProvider::instance()->isInMemory(key)) {
        if (!QFile::copy(key, path))
            return false;
        QFile::setPermissions(path, platform::PrivateFileRights);
        return true;
    }
    // It came through memory, or its file has been taken away while it was shown.
    const QPixmap image = ImageProvider::instance()->pixmap(key);
    return image.isNull() || writePinImage(image.toImage(), path);
}

/// The key of a copy of that key's picture; empty if there is no room for one.
QString copyOf(const QString &key) {
    const QString name = newName();
    // The owner of the folder clears it without asking other editors.
    const QString folder = ownsWorkFolder() ? workFolder() : QString();
    const QString path = folder + QLatin1Char('/') + name;
    if (!folder.isEmpty() && copyImage(key, path))
        return path;
    const QPixmap image = ImageProvider::instance()->pixmap(key);
    return image.isNull() || ImageProvider::instance()->insert(name, image) ? name : QString();
}

} // namespace

ImagesSetAside::ImagesSetAside(const QVector<Editor *> &captures) {
    for (Editor *editor : captures) {
        const QString key = copyOf(editor->imageKey());
        if (key.isEmpty()) {
            m_areWhole = false;
            return;
        }
        m_copies.append({editor, key});
    }
}

ImagesSetAside::~ImagesSetAside() {
    for (const Copy &copy : qAsConst(m_copies))
        ImageProvider::instance()->remove(copy.key);
}

void ImagesSetAside::replaceOriginals() {
    for (const Copy &copy : qAsConst(m_copies)) {
        ImageProvider::instance()->forget(copy.editor->imageKey());
        copy.editor->abandonImage();
        copy.editor->setImageKey(copy.key);
    }
    m_copies.clear();
}
