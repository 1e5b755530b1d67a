#include "platform/linux/keptimage.h"

#include "platform/linux/descriptor.h"

#include <QImage>

#include <sys/mman.h>
#include <sys/stat.h>

namespace {

bool writeImage(int descriptor, const QImage &image, quint32 copyTime) {
    platform::KeptImageHeader header;
    header.width = quint32(image.width());
    header.height = quint32(image.height());
    header.copyTime = copyTime;
    if (!platform::writeAll(descriptor, &header, sizeof header))
        return false;
    const size_t rowBytes = size_t(image.width()) * platform::KeptImageBytesPerPixel;
    for (int y = 0; y < image.height(); ++y) {
        if (!platform::writeAll(descriptor, image.constScanLine(y), rowBytes))
            return false;
    }
    return true;
}

} // namespace

int platform::writeKeptImage(const QImage &image, quint32 copyTime) {
    Descriptor file(::memfd_create("tindra-clipboard", MFD_CLOEXEC));
    const bool isWritten =
        file.isValid() && writeImage(file.get(), image.convertToFormat(QImage::Format_RGB32), copyTime);
    return isWritten ? file.release() : -1;
}

QImage platform::readKeptImage(int descriptor, quint32 *copyTime) {
    struct stat info;
    if (::fstat(descriptor, &info) != 0 || info.st_size < off_t(sizeof(KeptImageHeader)))
        return QImage();
    void *mapped = ::mmap(nullptr, size_t(info.st_size), PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (mapped == MAP_FAILED)
        return QImage();
    const auto *header = static_cast<const KeptImageHeader *>(mapped);
    const quint64 bytes = quint64(header->width) * header->height * KeptImageBytesPerPixel;
    if (header->magic != KeptImageHeader::Magic || bytes != quint64(info.st_size) - sizeof *header)
        return QImage();
    *copyTime = header->copyTime;
    return QImage(reinterpret_cast<const uchar *>(header + 1), int(header->width), int(header->height),
                  int(header->width) * KeptImageBytesPerPixel, QImage::Format_RGB32);
}
