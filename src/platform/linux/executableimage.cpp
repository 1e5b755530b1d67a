#include "platform/linux/executableimage.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr quint32 HeaderOffsetPlace = 0x3C;
constexpr quint32 ExecutableMark = 0x00004550; // "PE" and two zeros
constexpr quint32 FileHeaderSize = 24;         // with the signature before it
constexpr quint32 CheckSumInOptionalHeader = 64;
constexpr quint16 Magic32 = 0x10B;
constexpr quint16 Magic64 = 0x20B;
constexpr quint32 DirectoriesInOptionalHeader32 = 96;
constexpr quint32 DirectoriesInOptionalHeader64 = 112;
constexpr quint32 DirectoryEntrySize = 8;
constexpr quint32 CertificateDirectory = 4;
constexpr quint32 SectionHeaderSize = 40;
constexpr quint32 SizeInSectionHeader = 16; // the raw size, then the raw offset

constexpr quint32 CertificateHeaderSize = 8;
constexpr quint16 CertificateRevision = 0x0200;
constexpr quint16 SignedDataCertificate = 2;
constexpr quint32 CertificateAlignment = 8;

bool isZero(const QByteArray &bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == 0; });
}

/// Length of the DER element at the start, its head included; 0 when it does not fit.
int derLength(const QByteArray &bytes) {
    if (bytes.size() < 2)
        return 0;
    const auto first = static_cast<quint8>(bytes[1]);
    if (first < 0x80)
        return 2 + first <= bytes.size() ? 2 + first : 0;
    const int lengthBytes = first & 0x7F;
    if (lengthBytes < 1 || lengthBytes > 4 || bytes.size() < 2 + lengthBytes)
        return 0;
    quint64 length = 0;
    for (int i = 0; i < lengthBytes; ++i)
        length = length << 8 | static_cast<quint8>(bytes[2 + i]);
    const quint64 whole = 2 + lengthBytes + length;
    return whole <= static_cast<quint64>(bytes.size()) ? static_cast<int>(whole) : 0;
}

} // namespace

template <typename Number> bool ExecutableImage::read(quint64 offset, Number *value) const {
    if (offset + sizeof(Number) > static_cast<quint64>(m_bytes.size()))
        return false;
    *value = qFromLittleEndian<Number>(m_bytes.constData() + offset);
    return true;
}

std::optional<ExecutableImage> ExecutableImage::parse(const QByteArray &bytes) {
    ExecutableImage image(bytes);
    if (!bytes.startsWith("MZ") || !image.readHeaders())
        return std::nullopt;
    return image;
}

bool ExecutableImage::readHeaders() {
    quint32 header = 0;
    quint32 mark = 0;
    if (!read(HeaderOffsetPlace, &header) || !read(header, &mark) || mark != ExecutableMark)
        return false;
    const quint64 optional = quint64(header) + FileHeaderSize;
    quint16 optionalSize = 0;
    quint16 magic = 0;
    if (!read(quint64(header) + 6, &m_sectionCount) || !read(quint64(header) + 20, &optionalSize) ||
        !read(optional, &magic) || (magic != Magic32 && magic != Magic64))
        return false;
    const quint32 directories =
        magic == Magic32 ? DirectoriesInOptionalHeader32 : DirectoriesInOptionalHeader64;
    const quint64 entry = optional + directories + CertificateDirectory * DirectoryEntrySize;
    quint32 directoryCount = 0;
    if (!read(optional + directories - 4, &directoryCount) ||
        optional + optionalSize > static_cast<quint64>(m_bytes.size()))
        return false;
    m_checkSum = static_cast<quint32>(optional + CheckSumInOptionalHeader);
    m_sectionTable = static_cast<quint32>(optional + optionalSize);
    // A header that ends before the entry has no signature, and none may be read from what follows.
    if (directoryCount <= CertificateDirectory || entry + DirectoryEntrySize > m_sectionTable)
        return true;
    m_certificateEntry = static_cast<quint32>(entry);
    return read(entry, &m_certificateTable) && read(entry + 4, &m_certificateTableSize);
}

bool ExecutableImage::sectionsEndBefore(quint32 offset) const {
    const quint64 tableEnd = m_sectionTable + quint64(m_sectionCount) * SectionHeaderSize;
    if (tableEnd > offset)
        return false;
    for (int i = 0; i < m_sectionCount; ++i) {
        const quint64 header = m_sectionTable + quint64(i) * SectionHeaderSize;
        quint32 size = 0;
        quint32 start = 0;
        if (!read(header + SizeInSectionHeader, &size) || !read(header + SizeInSectionHeader + 4, &start) ||
            quint64(start) + size > offset)
            return false;
    }
    return true;
}

std::optional<QVector<QByteArray>> ExecutableImage::signatures() const {
    const quint64 end = quint64(m_certificateTable) + m_certificateTableSize;
    // What lies behind the table, or is loaded from it, would be in no digest.
    if (end != static_cast<quint64>(m_bytes.size()) || m_certificateTable % CertificateAlignment != 0 ||
        !sectionsEndBefore(m_certificateTable))
        return std::nullopt;
    QVector<QByteArray> found;
    for (quint64 place = m_certificateTable; place < end;) {
        quint32 length = 0;
        quint16 revision = 0;
        quint16 type = 0;
        if (!read(place, &length) || !read(place + 4, &revision) || !read(place + 6, &type) ||
            length <= CertificateHeaderSize || place + length > end || revision != CertificateRevision ||
            type != SignedDataCertificate)
            return std::nullopt;
        const quint64 next = std::min(end, (place + length + CertificateAlignment - 1) /
                                               CertificateAlignment * CertificateAlignment);
        const auto start = static_cast<int>(place + CertificateHeaderSize);
        const QByteArray entry = m_bytes.mid(start, static_cast<int>(next) - start);
        const int der = derLength(entry);
        // Nobody vouches for bytes behind the signature; only the padding to the next one may stand there.
        const int padding = entry.size() - der;
        if (der == 0 || padding < 0 || padding >= 2 * int(CertificateAlignment) || !isZero(entry.mid(der)))
            return std::nullopt;
        found.append(entry.left(der));
        place = next;
    }
    return found;
}

QVector<QByteArray> ExecutableImage::signedRanges() const {
    if (!hasCertificates())
        return {};
    const auto range = [this](quint32 from, quint32 to) {
        return QByteArray::fromRawData(m_bytes.constData() + from, static_cast<int>(to - from));
    };
    return {range(0, m_checkSum), range(m_checkSum + 4, m_certificateEntry),
            range(m_certificateEntry + DirectoryEntrySize, m_certificateTable)};
}
