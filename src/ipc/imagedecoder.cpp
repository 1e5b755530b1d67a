#include "ipc/imagedecoder.h"

#include <QImageReader>
#include <QSize>
#include <QtEndian>

#include <cmath>

namespace {

constexpr double BytesToMegabytes = 9.5367431640625e-7;
constexpr int DecodedDepth = 32;

constexpr char PngSignature[] = "\x89PNG\r\n\x1a\n";
constexpr int PngWidthOffset = 16;
constexpr int PngHeightOffset = 20;
constexpr int BitmapWidthOffset = 4;
constexpr int BitmapHeightOffset = 8;
constexpr int PictureHeaderSize = 24;
constexpr int IconFirstPictureOffset = 18;
constexpr int IconHeaderSize = 22;

/// The directory of an icon file tells small sizes only; the picture in it is a whole PNG or BMP that may be
/// of any size, and that is what the decoder follows.
QSize sizeInsideIcon(QIODevice *device) {
    const qint64 start = device->pos();
    const QByteArray directory = device->peek(IconHeaderSize);
    if (directory.size() < IconHeaderSize)
        return QSize();
    const auto offset = qFromLittleEndian<quint32>(directory.constData() + IconFirstPictureOffset);
    const bool found = device->seek(start + offset);
    const QByteArray header = found ? device->peek(PictureHeaderSize) : QByteArray();
    device->seek(start);
    if (header.size() < PictureHeaderSize)
        return QSize();
    if (header.startsWith(PngSignature))
        return QSize(qFromBigEndian<qint32>(header.constData() + PngWidthOffset),
                     qFromBigEndian<qint32>(header.constData() + PngHeightOffset));
    // The height counts colours and mask.
    return QSize(qFromLittleEndian<qint32>(header.constData() + BitmapWidthOffset),
                 std::abs(qFromLittleEndian<qint32>(header.constData() + BitmapHeightOffset) / 2));
}

QSize claimedSize(QImageReader &reader) {
    if (QImageReader::imageFormat(reader.device()) == "ico")
        return sizeInsideIcon(reader.device());
    return reader.size();
}

} // namespace

QImage decodeImage(QIODevice *device, double limitMegabytes) {
    QImageReader reader(device);
    // What a file is called says nothing about what is in it.
    reader.setDecideFormatFromContent(true);
    const QSize claimed = claimedSize(reader);
    if (claimed.isEmpty() || imageMegabytes(claimed.width(), claimed.height(), DecodedDepth) > limitMegabytes)
        return QImage();
    return reader.read();
}

double imageMegabytes(int width, int height, int depth) {
    const int bytesPerPixel = depth / 8;
    return std::floor(double(bytesPerPixel) * height * width * BytesToMegabytes);
}
