#include "services/certificatetool.h"

#include "platform/filesignature.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace CertificateTool {

qint32 Verifier::verify(const FileObejct &file, unsigned flags) const {
    if (!file.isSet())
        return static_cast<qint32>(platform::Trust::Failed);
    return verify(platform::readSignedFile(file.data()), flags);
}

qint32 Verifier::verify(const platform::SignedFile &file, unsigned flags) const {
    const platform::SignatureCheck check = platform::checkSignature(file, flags & CheapTrust);
    if (check.trust != platform::Trust::Good || m_signers.empty() || !(flags & MatchSigners))
        return static_cast<qint32>(check.trust);
    const bool isAccepted =
        std::any_of(check.signers.begin(), check.signers.end(), [this](const SignerInfo &signer) {
            return m_signers.count(signer.signerName) > 0 || m_signers.count(signer.counterSignerName) > 0;
        });
    return static_cast<qint32>(isAccepted ? platform::Trust::Good : platform::Trust::Failed);
}

int Verifier::compareSigner(const QString &path, const QString &expected, bool ignoreCase) {
    constexpr int NoName = -2;
    const platform::SignatureCheck check = platform::checkFileSignature(path, true);
    if (check.signers.isEmpty() || check.signers.first().signerName.isEmpty())
        return NoName;
    const int order = check.signers.first().signerName.compare(expected, ignoreCase ? Qt::CaseInsensitive
                                                                                    : Qt::CaseSensitive);
    return (order > 0) - (order < 0);
}

} // namespace CertificateTool

namespace {

bool canBeSigned(const QString &path) {
    // Libraries of this system beside programs and libraries of Windows.
    static const QStringList suffixes{QStringLiteral("exe"), QStringLiteral("dll"), QStringLiteral("qve"),
                                      QStringLiteral("qvc"), QStringLiteral("so")};
    return suffixes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

} // namespace

bool verifyFileSignature(const QString &path, bool fullCheck) {
    return QFileInfo::exists(path) && canBeSigned(path) &&
           verifySignature(path, platform::readSignedFile(path), fullCheck);
}

bool verifySignature(const QString &path, const platform::SignedFile &content, bool fullCheck) {
    using CertificateTool::Verifier;
    if (!canBeSigned(path))
        return false;
    Verifier verifier;
    verifier.addSigner(QStringLiteral("Norvane Corp."));
    verifier.addSigner(QStringLiteral("Quillgate Corp."));
    verifier.addSigner(QStringLiteral("Vellumark Corp."));
    const unsigned flags = fullCheck ? Verifier::MatchSigners : Verifier::MatchSigners | Verifier::CheapTrust;
    return verifier.verify(content, flags) >= 0;
}
