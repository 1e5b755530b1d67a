// Image bytes in memory, of any format that the toolkit knows or that pretends to be one.

#include "fuzz/support/property.h"
#include "ipc/imagedecoder.h"

#include <QBuffer>
#include <QCoreApplication>

namespace {

/// A budget of the editor's kind, but so small that a claim beyond it is soon found.
constexpr double LimitMegabytes = 4;

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
    if (image.isNull())
        return 0;
    require(imageMegabytes(image.width(), image.height(), image.depth()) <= LimitMegabytes,
            "a decoded image is within the limit");
    require(image.devicePixelRatio() == 1.0, "a decoded image is drawn in its own pixels");
    return 0;
}
