#include "output/imagewriter.h"

#include "output/gifimagewriter.h"
#include "platform/privatefile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QSaveFile>

#include <optional>

namespace {

/// Light compression: a capture of a large screen has to be on disk without a visible stall.
constexpr int PngQuality = 70;
constexpr int BestQuality = 100;
constexpr int LowestQuality = 0;

bool isFormat(const QString &suffix, const char *format) {
    return suffix.compare(QLatin1String(format), Qt::CaseInsensitive) == 0;
}

int effectiveQuality(const QString &suffix, int quality) {
    if (isFormat(suffix, "png"))
        return PngQuality;
    if (isFormat(suffix, "jpg") || quality >= 0)
        return quality;
    return isFormat(suffix, "webp") ? BestQuality : LowestQuality;
}

bool encode(const QImage &image, const QString &suffix, int quality, QIODevice *device) {
    if (isFormat(suffix, "gif")) {
        GifImageWriter writer;
        writer.addFrame(image, -1);
        return writer.save(device, 0);
    }
    QImageWriter writer(device, suffix.toLatin1());
    writer.setQuality(qMin(effectiveQuality(suffix, quality), BestQuality));
    return writer.write(image);
}

/// Of the file to be; none: those that a new file gets, or that an old one has.
using Rights = std::optional<QFileDevice::Permissions>;

/// A file system without access rights is no reason to lose the picture.
void setRights(QFileDevice &file, Rights rights) {
    if (rights)
        file.setPermissions(*rights);
}

/// The bytes of the file; empty when the format cannot be written. In memory first, because the encoders
/// leak when the device beneath them fails, and a full disk is no rare thing.
QByteArray encoded(const QImage &image, const QString &suffix, int quality) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return encode(image, suffix, quality, &buffer) ? buffer.data() : QByteArray();
}

bool writeAll(QFile &file, const QByteArray &bytes) {
    return file.seek(0) && file.write(bytes) == bytes.size() && file.resize(bytes.size()) && file.flush();
}

/// Writes into the existing file itself, for places where no second file can stand beside it and take its
/// name: a folder closed to us, a mounted file, a name at the limit of the file system. What stood there
/// comes back if the disk fills up on the way.
bool writeInPlace(const QString &path, const QByteArray &bytes, Rights rights) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        return false;
    setRights(file, rights);
    const QByteArray before = file.readAll();
    if (writeAll(file, bytes))
        return true;
    writeAll(file, before);
    return false;
}

bool write(const QImage &image, const QString &path, int quality, Rights rights) {
    const QFileInfo target(path);
    const QString suffix = target.suffix();
    if (image.isNull() || suffix.isEmpty() || (target.exists() && !target.isFile()))
        return false;

    const QByteArray bytes = encoded(image, suffix, quality);
    if (bytes.isEmpty())
        return false;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        // Before the first byte: the file is never open to others, not even for a moment.
        setRights(file, rights);
        if (file.write(bytes) != bytes.size() || !file.flush())
            return false;
        if (file.commit())
            return true;
    } else if (!target.isWritable()) {
        return false;
    }
    return writeInPlace(path, bytes, rights);
}

} // namespace

bool writeImage(const QImage &image, const QString &path, int quality) {
    return write(image, path, quality, {});
}

bool writePinImage(const QImage &image, const QString &path) {
    return write(image, path, BestQuality, platform::PrivateFileRights);
}
