// Image bytes in memory, of any format that the toolkit knows or that pretends to be one.

#include "fuzz/support/property.h"
#include "ipc/imagedecoder.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>

namespace {

/// A budget of the editor's kind, but so small that a claim beyond it is soon found.
constexpr double LimitMegabytes = 4;
/// Of the deepest pixels there are.
constexpr int DeepestPixel = 128;

/// What the toolkit makes of the bytes by itself; null where it says that the image may be too large, of the
/// formats whose readers say too little of what they decode to, and of the one whose reader may leave pixels
/// as they stood in memory or point them behind the colour table, so that no two readings are alike.
QImage plainlyDecoded(QByteArray &bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    if (format == "gif" || format == "ico" || format == "bmp")
        return QImage();
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isEmpty() || imageMegabytes(size.width(), size.height(), DeepestPixel) > LimitMegabytes)
        return QImage();
    QImage image = reader.read();
    if (imageMegabytes(image.width(), image.height(), DeepestPixel) > LimitMegabytes)
        return QImage();
    image.setDevicePixelRatio(1.0);
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static char name[] = "imagebytes";
    static char *arguments[] = {name, nullptr};
    static int count = 1;
    static const auto *const application = new QCoreApplication(count, arguments);
    require(application != nullptr, "there is an application");

    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QImage image = decodeImage(&buffer, LimitMegabytes);
    const QImage expected = plainlyDecoded(bytes);
    require(expected.isNull() || image == expected, "a picture within the limit comes out whole");
    if (image.isNull())
        return 0;
    require(imageMegabytes(image.width(), image.height(), image.depth()) <= LimitMegabytes,
            "a decoded image is within the limit");
    require(image.devicePixelRatio() == 1.0, "a decoded image is drawn in its own pixels");
    return 0;
}
