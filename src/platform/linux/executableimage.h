#pragma once

#include <QByteArray>
#include <QVector>

#include <optional>

/// What of an executable of Windows (PE) a signature speaks about. Takes any bytes.
class ExecutableImage {
public:
    /// Empty when the bytes are no such executable.
    static std::optional<ExecutableImage> parse(const QByteArray &bytes);

    bool hasCertificates() const { return m_certificateTableSize > 0; }
    /// The signatures as DER, or nothing when the table is not exactly what it should be: behind all that is
    /// loaded, at the file's end, with nothing but signatures in it.
    std::optional<QVector<QByteArray>> signatures() const;
    /// Everything but the check sum, the table's place and the table itself: what is digested. Only for an
    /// image whose `signatures` were found to be in order.
    QVector<QByteArray> signedRanges() const;

private:
    ExecutableImage(const QByteArray &bytes) : m_bytes(bytes) {}
    bool readHeaders();
    bool sectionsEndBefore(quint32 offset) const;
    template <typename Number> bool read(quint64 offset, Number *value) const;

    QByteArray m_bytes;
    quint32 m_checkSum = 0; ///< offsets in bytes from the file's start
    quint32 m_certificateEntry = 0;
    quint32 m_sectionTable = 0;
    quint16 m_sectionCount = 0;
    quint32 m_certificateTable = 0;
    quint32 m_certificateTableSize = 0;
};
