#include "platform/linux/signedmessage.h"

#include "platform/linux/certificatechain.h"
#include "platform/linux/freer.h"

#include <openssl/asn1t.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pkcs7.h>
#include <openssl/ts.h>

#include <array>
#include <ctime>

namespace {

// Object identifiers of the signatures in executables of Windows.
constexpr char ImageDigestContent[] = "1.3.6.1.4.1.311.2.1.4";
constexpr char PublisherInfo[] = "1.3.6.1.4.1.311.2.1.12";
constexpr char NestedSignature[] = "1.3.6.1.4.1.311.2.4.1";
constexpr char TimeStampToken[] = "1.3.6.1.4.1.311.3.3.1";
// Those of PKCS #9.
constexpr char CounterSignature[] = "1.2.840.113549.1.9.6";

constexpr int LongestOid = 80;

using BioPointer = std::unique_ptr<BIO, Freer<BIO_free_all>>;
using MessagePointer = std::unique_ptr<PKCS7, Freer<PKCS7_free>>;

const unsigned char *bytesOf(const QByteArray &array) {
    return reinterpret_cast<const unsigned char *>(array.constData());
}

QByteArray stringBytes(const ASN1_STRING *string) {
    return QByteArray(reinterpret_cast<const char *>(ASN1_STRING_get0_data(string)),
                      ASN1_STRING_length(string));
}

QString oidOf(const ASN1_OBJECT *object) {
    std::array<char, LongestOid> text{};
    OBJ_obj2txt(text.data(), static_cast<int>(text.size()), object, 1);
    return QString::fromLatin1(text.data());
}

/// Digests that nobody can forge a second file for.
bool isStrongDigest(int algorithm) {
    return algorithm == NID_sha256 || algorithm == NID_sha384 || algorithm == NID_sha512;
}

bool isStrongDigest(const X509_ALGOR *algorithm) {
    const ASN1_OBJECT *object = nullptr;
    X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
    return isStrongDigest(OBJ_obj2nid(object));
}

QDateTime dateTime(const ASN1_TIME *time) {
    std::tm parts{};
    if (!time || ASN1_TIME_to_tm(time, &parts) != 1)
        return QDateTime();
    return QDateTime(QDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday),
                     QTime(parts.tm_hour, parts.tm_min, parts.tm_sec), Qt::UTC);
}

QDateTime signingTimeOf(PKCS7_SIGNER_INFO *signer) {
    const ASN1_TYPE *value = PKCS7_get_signed_attribute(signer, NID_pkcs9_signingTime);
    if (!value || (value->type != V_ASN1_UTCTIME && value->type != V_ASN1_GENERALIZEDTIME))
        return QDateTime();
    return dateTime(value->value.asn1_string);
}

/// Empty for a digest that can be forged.
QByteArray hash(const X509_ALGOR *algorithm, const ASN1_STRING *data) {
    if (!isStrongDigest(algorithm))
        return QByteArray();
    const ASN1_OBJECT *object = nullptr;
    X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
    const EVP_MD *method = EVP_get_digestbyobj(object);
    QByteArray digest(EVP_MAX_MD_SIZE, Qt::Uninitialized);
    unsigned int size = 0;
    if (!method || EVP_Digest(ASN1_STRING_get0_data(data), static_cast<size_t>(ASN1_STRING_length(data)),
                              reinterpret_cast<unsigned char *>(digest.data()), &size, method, nullptr) != 1)
        return QByteArray();
    digest.truncate(static_cast<int>(size));
    return digest;
}

/// One element of DER after the other; ends at the first that does not fit.
class DerReader {
public:
    explicit DerReader(const QByteArray &bytes) : m_place(bytesOf(bytes)), m_left(bytes.size()) {}

    /// The next element's content; false at the end.
    bool next(int *tag, QByteArray *content) {
        if (m_left <= 0)
            return false;
        long length = 0;
        int xclass = 0;
        const unsigned char *place = m_place;
        const int result = ASN1_get_object(&place, &length, tag, &xclass, m_left);
        // Bit 0 tells an element without a length, which DER does not have.
        if (result & 0x81)
            return false;
        *content = QByteArray(reinterpret_cast<const char *>(place), static_cast<int>(length));
        m_left -= place + length - m_place;
        m_place = place + length;
        return true;
    }

private:
    const unsigned char *m_place;
    long m_left;
};

QByteArray contentOf(const QByteArray &element) {
    int tag = 0;
    QByteArray content;
    return DerReader(element).next(&tag, &content) ? content : QByteArray();
}

/// A text is either of two bytes a character (tag 0, big-endian) or of one (tag 1).
QString publisherText(int tag, const QByteArray &bytes) {
    if (tag != 0)
        return QString::fromLatin1(bytes);
    QString text;
    for (int i = 0; i + 1 < bytes.size(); i += 2)
        text += QChar(
            static_cast<ushort>(static_cast<quint8>(bytes[i]) << 8 | static_cast<quint8>(bytes[i + 1])));
    return text;
}

bool isSignatureValid(PKCS7 *message, BIO *content) {
    return PKCS7_verify(message, nullptr, nullptr, content, nullptr, PKCS7_NOVERIFY | PKCS7_BINARY) == 1;
}

PKCS7_SIGNER_INFO *signerOf(PKCS7 *message) {
    return sk_PKCS7_SIGNER_INFO_value(PKCS7_get_signer_info(message), 0);
}

/// One signer, and one digest for him: the library loses what it allocated for further ones.
bool hasOneSigner(PKCS7 *message) {
    return PKCS7_type_is_signed(message) && message->d.sign && message->d.sign->contents &&
           PKCS7_get_signer_info(message) && sk_PKCS7_SIGNER_INFO_num(PKCS7_get_signer_info(message)) == 1 &&
           sk_X509_ALGOR_num(message->d.sign->md_algs) == 1;
}

/// The bytes behind a buffer: of a plain memory source the library makes a copy, which it loses when a
/// message turns out to be damaged.
BioPointer readerOf(const QByteArray &content) {
    BioPointer memory(BIO_new_mem_buf(content.constData(), content.size()));
    BioPointer buffer(BIO_new(BIO_f_buffer()));
    if (memory && buffer)
        BIO_push(buffer.get(), memory.release());
    return buffer;
}

} // namespace

void SignedMessage::Deleter::operator()(pkcs7_st *message) const {
    PKCS7_free(message);
}

std::optional<SignedMessage> SignedMessage::parse(const QByteArray &der) {
    const unsigned char *place = bytesOf(der);
    SignedMessage message(d2i_PKCS7(nullptr, &place, der.size()));
    if (!message.m_message || place != bytesOf(der) + der.size() || !hasOneSigner(message.m_message.get()))
        return std::nullopt;
    return message;
}

std::optional<SignedMessage::ImageDigest> SignedMessage::imageDigest() const {
    const PKCS7 *content = m_message->d.sign->contents;
    const ASN1_TYPE *value = content->d.other;
    if (oidOf(content->type) != QLatin1String(ImageDigestContent) || !value || value->type != V_ASN1_SEQUENCE)
        return std::nullopt;
    ImageDigest result;
    result.content = contentOf(stringBytes(value->value.sequence));
    // First what kind of file it is, then the digest.
    DerReader reader(result.content);
    int tag = 0;
    QByteArray fileKind;
    if (!reader.next(&tag, &fileKind))
        return std::nullopt;
    QByteArray digestInfo;
    if (!reader.next(&tag, &digestInfo) || tag != V_ASN1_SEQUENCE)
        return std::nullopt;
    DerReader parts(digestInfo);
    QByteArray algorithm;
    if (!parts.next(&tag, &algorithm) || tag != V_ASN1_SEQUENCE || !parts.next(&tag, &result.digest) ||
        tag != V_ASN1_OCTET_STRING)
        return std::nullopt;
    int oidTag = 0;
    QByteArray oid;
    if (!DerReader(algorithm).next(&oidTag, &oid) || oidTag != V_ASN1_OBJECT)
        return std::nullopt;
    const unsigned char *place = bytesOf(algorithm);
    const std::unique_ptr<ASN1_OBJECT, Freer<ASN1_OBJECT_free>> object(
        d2i_ASN1_OBJECT(nullptr, &place, algorithm.size()));
    result.algorithm = object ? OBJ_obj2nid(object.get()) : NID_undef;
    if (!isStrongDigest(result.algorithm))
        return std::nullopt;
    return result;
}

bool SignedMessage::isSignatureOf(const QByteArray &content) const {
    const PKCS7_SIGNER_INFO *signer = signerOf(m_message.get());
    if (!isStrongDigest(signer->digest_alg) || sk_X509_ATTRIBUTE_num(signer->auth_attr) <= 0)
        return false;
    const BioPointer data = readerOf(content);
    return data && isSignatureValid(m_message.get(), data.get());
}

x509_st *SignedMessage::certificate() const {
    return PKCS7_cert_from_signer_info(m_message.get(), signerOf(m_message.get()));
}

platform::Trust SignedMessage::checkCertificates(const QDateTime &time) const {
    X509 *signer = certificate();
    if (!signer)
        return platform::Trust::Failed;
    return certificatechain::check(signer, m_message->d.sign->cert, certificatechain::Purpose::CodeSigning,
                                   time);
}

QByteArray SignedMessage::attribute(const char *oid, bool isSigned, int index) const {
    const PKCS7_SIGNER_INFO *signer = signerOf(m_message.get());
    const STACK_OF(X509_ATTRIBUTE) *attributes = isSigned ? signer->auth_attr : signer->unauth_attr;
    for (int i = 0; i < sk_X509_ATTRIBUTE_num(attributes); ++i) {
        X509_ATTRIBUTE *found = sk_X509_ATTRIBUTE_value(attributes, i);
        if (oidOf(X509_ATTRIBUTE_get0_object(found)) != QLatin1String(oid))
            continue;
        const ASN1_TYPE *value = X509_ATTRIBUTE_get0_type(found, index);
        return value && value->type == V_ASN1_SEQUENCE ? stringBytes(value->value.sequence) : QByteArray();
    }
    return QByteArray();
}

SignerInfo SignedMessage::signer() const {
    SignerInfo info;
    if (const X509 *signer = certificate()) {
        info.signerName = certificatechain::displayName(X509_get_subject_name(signer));
        info.issuerName = certificatechain::displayName(X509_get_issuer_name(signer));
    }
    readAttributes(&info);
    if (!readTimeStampToken(&info))
        readCounterSignature(&info);
    return info;
}

void SignedMessage::readAttributes(SignerInfo *info) const {
    info->signingTime = signingTimeOf(signerOf(m_message.get()));
    const QByteArray publisher = contentOf(attribute(PublisherInfo, true));
    DerReader reader(publisher);
    int tag = 0;
    QByteArray part;
    while (reader.next(&tag, &part)) {
        int innerTag = 0;
        QByteArray inner;
        if (!DerReader(part).next(&innerTag, &inner))
            continue;
        if (tag == 0)
            info->programName = publisherText(innerTag, inner);
        else if (innerTag == 0)
            info->publisherLink = QString::fromLatin1(inner);
    }
}

bool SignedMessage::readTimeStampToken(SignerInfo *info) const {
    const QByteArray der = attribute(TimeStampToken, false);
    const unsigned char *place = bytesOf(der);
    const MessagePointer token(der.isEmpty() ? nullptr : d2i_PKCS7(nullptr, &place, der.size()));
    if (!token || !hasOneSigner(token.get()) || !isStrongDigest(signerOf(token.get())->digest_alg) ||
        !isSignatureValid(token.get(), nullptr))
        return false;
    const std::unique_ptr<TS_TST_INFO, Freer<TS_TST_INFO_free>> stamp(PKCS7_to_TS_TST_INFO(token.get()));
    X509 *stamper = PKCS7_cert_from_signer_info(token.get(), signerOf(token.get()));
    if (!stamp || !stamper)
        return false;
    TS_MSG_IMPRINT *imprint = TS_TST_INFO_get_msg_imprint(stamp.get());
    const QByteArray stamped = hash(TS_MSG_IMPRINT_get_algo(imprint), signerOf(m_message.get())->enc_digest);
    const QDateTime time = dateTime(TS_TST_INFO_get_time(stamp.get()));
    if (stamped.isEmpty() || stamped != stringBytes(TS_MSG_IMPRINT_get_msg(imprint)) || !time.isValid() ||
        certificatechain::check(stamper, token->d.sign->cert, certificatechain::Purpose::TimeStamping,
                                time) != platform::Trust::Good)
        return false;
    info->counterSignerName = certificatechain::displayName(X509_get_subject_name(stamper));
    info->counterSigningTime = time;
    return true;
}

bool SignedMessage::readCounterSignature(SignerInfo *info) const {
    const QByteArray der = attribute(CounterSignature, false);
    const unsigned char *place = bytesOf(der);
    const std::unique_ptr<PKCS7_SIGNER_INFO, Freer<PKCS7_SIGNER_INFO_free>> counter(
        der.isEmpty() ? nullptr : d2i_PKCS7_SIGNER_INFO(nullptr, &place, der.size()));
    if (!counter || !isStrongDigest(counter->digest_alg) || sk_X509_ATTRIBUTE_num(counter->auth_attr) <= 0)
        return false;
    X509 *stamper = PKCS7_cert_from_signer_info(m_message.get(), counter.get());
    const ASN1_OBJECT *algorithm = nullptr;
    X509_ALGOR_get0(&algorithm, nullptr, nullptr, counter->digest_alg);
    const EVP_MD *method = EVP_get_digestbyobj(algorithm);
    const QDateTime time = signingTimeOf(counter.get());
    const BioPointer digest(BIO_new(BIO_f_md()));
    if (!stamper || !method || !digest || !time.isValid() || BIO_set_md(digest.get(), method) != 1)
        return false;
    BIO_push(digest.get(), BIO_new(BIO_s_null()));
    // It signs the signature itself.
    const ASN1_OCTET_STRING *signature = signerOf(m_message.get())->enc_digest;
    BIO_write(digest.get(), ASN1_STRING_get0_data(signature), ASN1_STRING_length(signature));
    if (PKCS7_signatureVerify(digest.get(), m_message.get(), counter.get(), stamper) != 1 ||
        certificatechain::check(stamper, m_message->d.sign->cert, certificatechain::Purpose::TimeStamping,
                                time) != platform::Trust::Good)
        return false;
    info->counterSignerName = certificatechain::displayName(X509_get_subject_name(stamper));
    info->counterSigningTime = time;
    return true;
}

QVector<QByteArray> SignedMessage::nested() const {
    QVector<QByteArray> found;
    for (int i = 0;; ++i) {
        const QByteArray der = attribute(NestedSignature, false, i);
        if (der.isEmpty())
            return found;
        found.append(der);
    }
}
