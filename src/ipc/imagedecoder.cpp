#include "ipc/imagedecoder.h"

#include <QImageReader>
#include <QSize>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace {

constexpr double BytesToMegabytes = 9.5367431640625e-7;
/// Of a shown image; what is decoded to less is widened afterwards.
constexpr int UsualDepth = 32;
constexpr int DeepDepth = 64;

constexpr char PngSignature[] = "\x89PNG\r\n\x1a\n";
constexpr int PngWidthOffset = 16;
constexpr int PngHeightOffset = 20;
constexpr int PngChannelBitsOffset = 24;
constexpr char DeepChannelBits = 16;
constexpr int GifWidthOffset = 6;
constexpr int GifHeightOffset = 8;
constexpr int GifHeaderSize = 10;
constexpr int BitmapWidthOffset = 4;
constexpr int BitmapHeightOffset = 8;
constexpr int PictureHeaderSize = 25;
constexpr int IconFirstPictureLength = 14;
constexpr int IconFirstPictureOffset = 18;
constexpr int IconHeaderSize = 22;

/// What a header says about the pixels behind it.
struct Claim {
    QSize size;
    int depth = UsualDepth;
};

/// The directory of an icon file tells small sizes only; the picture in it is a whole PNG or BMP that may be
/// of any size, and that is what the decoder follows.
Claim claimInsideIcon(QIODevice *device) {
    const qint64 start = device->pos();
    const QByteArray directory = device->peek(IconHeaderSize);
    if (directory.size() < IconHeaderSize)
        return {};
    const auto offset = qFromLittleEndian<quint32>(directory.constData() + IconFirstPictureOffset);
    // The decoder makes room for as many bytes as the directory tells, before it reads one of them.
    const auto length = qFromLittleEndian<quint32>(directory.constData() + IconFirstPictureLength);
    if (length > device->size() - start)
        return {};
    const bool found = device->seek(start + offset);
    const QByteArray header = found ? device->peek(PictureHeaderSize) : QByteArray();
    device->seek(start);
    if (header.size() < PictureHeaderSize)
        return {};
    if (header.startsWith(PngSignature))
        return {QSize(qFromBigEndian<qint32>(header.constData() + PngWidthOffset),
                      qFromBigEndian<qint32>(header.constData() + PngHeightOffset)),
                header.at(PngChannelBitsOffset) == DeepChannelBits ? DeepDepth : UsualDepth};
    // The height counts colours and mask.
    return {QSize(qFromLittleEndian<qint32>(header.constData() + BitmapWidthOffset),
                  std::abs(qFromLittleEndian<qint32>(header.constData() + BitmapHeightOffset) / 2))};
}

/// The reader tells a size that fits the first frame when the screen is far larger, and then decodes to the
/// size of the screen all the same: either may be what the image gets, in each direction.
QSize largerOfScreenAnd(const QSize &told, QIODevice *device) {
    const QByteArray header = device->peek(GifHeaderSize);
    if (header.size() < GifHeaderSize)
        return {};
    return told.expandedTo(QSize(qFromLittleEndian<quint16>(header.constData() + GifWidthOffset),
                                 qFromLittleEndian<quint16>(header.constData() + GifHeightOffset)));
}

/// Readers of a torn header answer with any number.
int depthOf(QImage::Format format) {
    if (format <= QImage::Format_Invalid || format >= QImage::NImageFormats)
        return UsualDepth;
    return std::max<int>(UsualDepth, QImage::toPixelFormat(format).bitsPerPixel());
}

Claim claimOf(QImageReader &reader) {
    const QByteArray format = QImageReader::imageFormat(reader.device());
    if (format == "ico")
        return claimInsideIcon(reader.device());
    const QSize size = reader.size();
    if (format == "gif" && !size.isEmpty())
        return {largerOfScreenAnd(size, reader.device())};
    // Behind a torn header the readers' answer is whatever stood in memory.
    return {size, size.isEmpty() ? UsualDepth : depthOf(reader.imageFormat())};
}

bool isWithin(double limitMegabytes, const QSize &size, int depth) {
    return !size.isEmpty() && imageMegabytes(size.width(), size.height(), depth) <= limitMegabytes;
}

} // namespace

QImage decodeImage(QIODevice *device, double limitMegabytes) {
    QImageReader reader(device);
    // What a file is called says nothing about what is in it.
    reader.setDecideFormatFromContent(true);
    const Claim claim = claimOf(reader);
    if (!isWithin(limitMegabytes, claim.size, claim.depth))
        return QImage();
    QImage image = reader.read();
    // A decoder may make more of a file than its reader told before.
    if (!isWithin(limitMegabytes, image.size(), image.depth()))
        return QImage();
    // A file called "…@2x" comes out as a picture for a denser screen, drawn at half its size.
    image.setDevicePixelRatio(1.0);
    return image;
}

double imageMegabytes(int width, int height, int depth) {
    const int bytesPerPixel = depth / 8;
    return std::floor(double(bytesPerPixel) * height * width * BytesToMegabytes);
}
