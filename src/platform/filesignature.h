#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

/// Who signed a file, and what the signature says of it. Texts are empty where it says nothing.
struct SignerInfo {
    QString signerName; ///< common name of the signer's certificate
    QString issuerName;
    QString programName;
    QString publisherLink;
    QDateTime signingTime;        ///< as the signer claims; UTC
    QString counterSignerName;    ///< of a time stamp that holds
    QDateTime counterSigningTime; ///< from that time stamp; UTC
};

namespace platform {

/// What became of a signature check: codes of Windows, so that they read the same in every log.
/// Negative ones are failures.
enum class Trust : qint32 {
    Good = 0,
    Failed = qint32(0x80004005),
    NoSignature = qint32(0x800B0100),
    NotAnExecutable = qint32(0x800700C1),
    BadDigest = qint32(0x80096010),
    BadCertificateTable = qint32(0x800B0003),
    Expired = qint32(0x800B0101),
    UntrustedRoot = qint32(0x800B0109),
    WrongUsage = qint32(0x800B0110)
};

struct SignatureCheck {
    Trust trust = Trust::Failed;
    /// Of the signatures that hold, in the file's order.
    QVector<SignerInfo> signers;
};

/// Checks the signatures of an executable (embedded, nested ones too) or of a shared object (in the file of
/// the same name with ".p7s" behind it) against the system's roots.
///
/// Good when one of them holds: digest, signature, certificates for code signing up to a root, valid now or
/// at the time of a time stamp. The roots are those that the system was installed with: no variable of the
/// environment leads to others. `cheap` leaves out everything about certificates and must not decide what is
/// run. Any thread; reads the file once.
SignatureCheck checkFileSignature(const QString &path, bool cheap);

/// Settles for the whole process that the library of the checks, which TLS shares, reads no settings: they
/// name modules to load into the process, unsigned, and a variable of the environment says where they stand.
/// Only the first use of that library decides, so the program calls this before anything else may use it; a
/// check calls it too. Any thread.
void keepOutCryptographySettings();

/// A file as it was at one moment: what is checked and what is used are the same, whatever becomes of the
/// file meanwhile.
struct SignedFile {
    bool isRead = false; ///< false: the file could not be read, or is no plain file of a sensible size
    QByteArray bytes;
    bool hasSignatureFile = false; ///< a shared object's; the signature of an executable is part of it
    QByteArray signature;
};

/// Reads a file and, of a shared object, the signature beside it, once. Any thread.
SignedFile readSignedFile(const QString &path);

/// The same check for what was read already.
SignatureCheck checkSignature(const SignedFile &file, bool cheap);

/// Tests only, before the first check: a file of certificates that are the only roots; empty brings back the
/// system's.
void setTrustedRoots(const QString &path);

} // namespace platform
