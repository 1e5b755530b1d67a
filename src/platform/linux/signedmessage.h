#pragma once

#include "platform/filesignature.h"

#include <QByteArray>
#include <QVector>

#include <memory>
#include <optional>

struct pkcs7_st;
struct x509_st;

/// One PKCS #7 signature with a single signer: what it signs, whether it holds, who made it. Takes any bytes.
class SignedMessage {
public:
    /// What the signature of an executable signs: the digest of the image.
    struct ImageDigest {
        int algorithm = 0; ///< OpenSSL's number of it
        QByteArray digest;
        QByteArray content; ///< the signed bytes that say so
    };

    /// Empty when the bytes are anything else, or have anything behind them.
    static std::optional<SignedMessage> parse(const QByteArray &der);

    std::optional<ImageDigest> imageDigest() const;
    /// Whether the signer's key signed exactly these bytes. Digests that can be forged count as no signature.
    bool isSignatureOf(const QByteArray &content) const;
    /// Certificates from the signer up to a root of the system, for code signing, at `time` or now.
    platform::Trust checkCertificates(const QDateTime &time) const;
    /// Reads the time stamp, if there is one that holds, into the record.
    SignerInfo signer() const;
    /// Further signatures of the same file that are kept inside this one.
    QVector<QByteArray> nested() const;

private:
    struct Deleter {
        void operator()(pkcs7_st *message) const;
    };
    explicit SignedMessage(pkcs7_st *message) : m_message(message, Deleter()) {}
    x509_st *certificate() const;
    QByteArray attribute(const char *oid, bool isSigned, int index = 0) const;
    void readAttributes(SignerInfo *info) const;
    bool readTimeStampToken(SignerInfo *info) const;
    bool readCounterSignature(SignerInfo *info) const;

    std::shared_ptr<pkcs7_st> m_message;
};
