#include "platform/filesignature.h"

#include "platform/linux/certificatechain.h"
#include "platform/linux/executableimage.h"
#include "platform/linux/signedmessage.h"

#include <QFile>
#include <QFileInfo>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <memory>

namespace platform {

namespace {

/// Nothing that the program loads or starts comes near it.
constexpr qint64 LargestFile = qint64(1) << 30;
/// Honest detached signatures take some kilobytes.
constexpr qint64 LargestSignature = qint64(1) << 20;
/// Signatures in signatures; honest files have one level.
constexpr int DeepestNesting = 4;

bool readFile(const QString &path, qint64 largest, QByteArray *bytes) {
    // Opening a pipe would wait for whoever writes into it.
    if (!QFileInfo(path).isFile())
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential() || file.size() > largest)
        return false;
    *bytes = file.readAll();
    return file.error() == QFileDevice::NoError;
}

QByteArray digestOf(const QVector<QByteArray> &ranges, int algorithm) {
    const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX *)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    const EVP_MD *method = EVP_get_digestbynid(algorithm);
    if (!context || !method || EVP_DigestInit_ex(context.get(), method, nullptr) != 1)
        return QByteArray();
    for (const QByteArray &range : ranges)
        EVP_DigestUpdate(context.get(), range.constData(), static_cast<size_t>(range.size()));
    QByteArray digest(EVP_MD_get_size(method), Qt::Uninitialized);
    EVP_DigestFinal_ex(context.get(), reinterpret_cast<unsigned char *>(digest.data()), nullptr);
    return digest;
}

/// Collects the verdicts of a file's signatures: one good one is enough, else the first says why not.
class Verdict {
public:
    explicit Verdict(bool cheap) : m_isCheap(cheap) {}

    void add(const SignedMessage &message, bool holds) {
        if (!holds) {
            addTrust(Trust::BadDigest);
            return;
        }
        const SignerInfo signer = message.signer();
        const Trust trust = m_isCheap ? Trust::Good : message.checkCertificates(signer.counterSigningTime);
        addTrust(trust);
        if (trust == Trust::Good)
            m_check.signers.append(signer);
    }
    void addTrust(Trust trust) {
        if (!m_isSet || trust == Trust::Good)
            m_check.trust = trust;
        m_isSet = true;
    }
    SignatureCheck check() const { return m_check; }

private:
    const bool m_isCheap;
    bool m_isSet = false;
    SignatureCheck m_check;
};

void addImageSignature(const QByteArray &der, const ExecutableImage &image, int depth, Verdict *verdict) {
    const std::optional<SignedMessage> message = SignedMessage::parse(der);
    const auto digest = message ? message->imageDigest() : std::nullopt;
    if (!digest) {
        verdict->addTrust(Trust::BadCertificateTable);
        return;
    }
    verdict->add(*message, message->isSignatureOf(digest->content) &&
                               digestOf(image.signedRanges(), digest->algorithm) == digest->digest);
    if (depth >= DeepestNesting)
        return;
    const QVector<QByteArray> nested = message->nested();
    for (const QByteArray &inner : nested)
        addImageSignature(inner, image, depth + 1, verdict);
}

SignatureCheck checkImage(const QByteArray &bytes, bool cheap) {
    const std::optional<ExecutableImage> image = ExecutableImage::parse(bytes);
    if (!image)
        return {Trust::NotAnExecutable, {}};
    if (!image->hasCertificates())
        return {Trust::NoSignature, {}};
    const auto signatures = image->signatures();
    if (!signatures || signatures->isEmpty())
        return {Trust::BadCertificateTable, {}};
    Verdict verdict(cheap);
    for (const QByteArray &der : *signatures)
        addImageSignature(der, *image, 0, &verdict);
    return verdict.check();
}

bool isSharedObject(const QByteArray &bytes) {
    return bytes.startsWith("\177ELF");
}

SignatureCheck checkSharedObject(const SignedFile &file, bool cheap) {
    if (!file.hasSignatureFile)
        return {Trust::NoSignature, {}};
    const auto message = SignedMessage::parse(file.signature);
    if (!message)
        return {Trust::BadCertificateTable, {}};
    Verdict verdict(cheap);
    verdict.add(*message, message->isSignatureOf(file.bytes));
    return verdict.check();
}

} // namespace

SignedFile readSignedFile(const QString &path) {
    SignedFile file;
    file.isRead = readFile(path, LargestFile, &file.bytes);
    const QString signaturePath = path + QStringLiteral(".p7s");
    if (isSharedObject(file.bytes) && QFile::exists(signaturePath)) {
        file.hasSignatureFile = true;
        if (!readFile(signaturePath, LargestSignature, &file.signature))
            file.signature.clear();
    }
    return file;
}

void keepOutCryptographySettings() {
    OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
}

SignatureCheck checkSignature(const SignedFile &file, bool cheap) {
    keepOutCryptographySettings();
    if (!file.isRead)
        return {Trust::Failed, {}};
    const SignatureCheck check =
        isSharedObject(file.bytes) ? checkSharedObject(file, cheap) : checkImage(file.bytes, cheap);
    // What went wrong on the way stands in the library's list of this thread; the next user of it starts
    // clean.
    ERR_clear_error();
    return check;
}

SignatureCheck checkFileSignature(const QString &path, bool cheap) {
    return checkSignature(readSignedFile(path), cheap);
}

void setTrustedRoots(const QString &path) {
    certificatechain::setRoots(path);
}

} // namespace platform
