#include "ipc/imageprovider.h"

#include "ipc/imagedecoder.h"
#include "platform/namedlock.h"
#include "platform/sharedimageblock.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSharedMemory>

#include <memory>

namespace {

std::unique_ptr<ImageProvider> &holder() {
    static std::unique_ptr<ImageProvider> provider;
    return provider;
}

void releaseImages() {
    holder().reset();
}

/// One decode, whose pixels become the pixmap's own.
QPixmap decode(QIODevice *device) {
    return QPixmap::fromImage(decodeImage(device, ImageProvider::BudgetMegabytes));
}

QPixmap decodeBytes(const char *bytes, int size) {
    QByteArray encoded = QByteArray::fromRawData(bytes, size);
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::ReadOnly);
    return decode(&buffer);
}

QPixmap decodeFile(const QString &path) {
    if (!QFileInfo(path).isFile())
        return QPixmap();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QPixmap();
    return decode(&file);
}

double megabytes(const QPixmap &pixmap) {
    return imageMegabytes(pixmap.width(), pixmap.height(), pixmap.depth());
}

} // namespace

ImageProvider *ImageProvider::instance() {
    if (!holder()) {
        holder().reset(new ImageProvider);
        // Pixmaps must not outlive the application object.
        qAddPostRoutine(releaseImages);
    }
    return holder().get();
}

void ImageProvider::resetForTesting() {
    releaseImages();
}

void ImageProvider::loadFromMemory(const QString &key, int size) {
    const platform::SharedImageBlock block = platform::sharedImageBlock();
    platform::NamedLock lock(block.lockName);
    if (!lock.lock())
        return;
    // Made after the lock and so detached before it goes: who leaves last removes block and key file, which
    // must not be those that the next sender has just made.
    QSharedMemory memory;
    memory.setNativeKey(block.nativeKey);
    if (!memory.attach(QSharedMemory::ReadOnly) || !platform::isBlockOfThisUserAlone(block.nativeKey))
        return;
    if (size <= 0 || size > memory.size())
        return;
    insert(key, decodeBytes(static_cast<const char *>(memory.constData()), size));
}

QPixmap ImageProvider::pixmap(const QString &path) {
    if (path == m_currentPath)
        return m_currentPixmap;
    QPixmap found;
    if (QFileInfo(path).isAbsolute())
        found = decodeFile(path);
    if (found.isNull()) {
        const auto image = m_images.constFind(path);
        if (image == m_images.constEnd())
            return QPixmap();
        found = *image;
    }
    m_currentPixmap = found;
    m_currentPath = path;
    return found;
}

bool ImageProvider::insert(const QString &key, const QPixmap &pixmap) {
    const double size = megabytes(pixmap);
    if (m_usedMegabytes + size > BudgetMegabytes)
        return false;
    // A key that comes a second time is counted a second time. A sender has to take a key of its own for each
    // capture, and one that does not meets the budget early instead of passing it.
    m_images.insert(key, pixmap);
    m_usedMegabytes += size;
    if (key == m_currentPath)
        forgetCurrent();
    return true;
}

bool ImageProvider::remove(const QString &path) {
    if (path.isEmpty())
        return false;
    // A relative one is the key of an image in memory; a file of that name is somebody else's.
    if (QFileInfo(path).isAbsolute())
        QFile::remove(path);
    forget(path);
    return true;
}

void ImageProvider::forget(const QString &path) {
    dropFromMemory(path);
    if (path == m_currentPath)
        forgetCurrent();
}

void ImageProvider::forgetCurrent() {
    m_currentPixmap = QPixmap();
    m_currentPath.clear();
}

bool ImageProvider::dropFromMemory(const QString &path) {
    const auto image = m_images.find(path);
    if (image == m_images.end())
        return false;
    m_usedMegabytes -= megabytes(*image);
    m_images.erase(image);
    return true;
}

bool ImageProvider::isFile(const QString &path) const {
    return QFileInfo(path).isAbsolute() && QFileInfo::exists(path);
}
