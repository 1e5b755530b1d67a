// What of an executable a signature speaks about.

#include "fuzz/support/property.h"
#include "platform/linux/executableimage.h"

#include <QtEndian>

namespace {

constexpr int CheckSumSize = 4;
constexpr int TableEntrySize = 8;

/// Whatever is not digested could be changed behind the signer's back: the check sum, the place of the table
/// and the table itself are all that may be left out.
void checkRanges(const QByteArray &bytes, const QVector<QByteArray> &ranges) {
    require(ranges.size() == 3, "three ranges are signed");
    require(ranges[0].constData() == bytes.constData(), "the signed bytes begin with the file");
    require(ranges[1].constData() == ranges[0].constData() + ranges[0].size() + CheckSumSize,
            "only the check sum is left out first");
    const char *entry = ranges[1].constData() + ranges[1].size();
    require(ranges[2].constData() == entry + TableEntrySize, "only the table's place is left out next");
    const qint64 end = ranges[2].constData() + ranges[2].size() - bytes.constData();
    require(end == qFromLittleEndian<quint32>(entry), "all is signed up to the table");
    require(end + qFromLittleEndian<quint32>(entry + 4) == bytes.size(), "the table ends the file");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const std::optional<ExecutableImage> image = ExecutableImage::parse(bytes);
    if (!image || !image->hasCertificates()) {
        require(!image || image->signedRanges().isEmpty(), "nothing is signed without a signature");
        return 0;
    }
    const auto signatures = image->signatures();
    if (!signatures)
        return 0;
    checkRanges(bytes, image->signedRanges());
    for (const QByteArray &signature : *signatures)
        require(bytes.contains(signature), "a signature is what stands in the file");
    return 0;
}
