// A PKCS #7 signature in DER, as a detached file or from an executable's table.

#include "fuzz/support/testroot.h"
#include "platform/linux/signedmessage.h"

#include <openssl/err.h>

namespace {

constexpr int DeepestNesting = 4;

void checkContent(const SignedMessage &message, const QByteArray &content) {
    if (message.isSignatureOf(content))
        require(!message.isSignatureOf(content + 'x'), "no signature is one of other bytes too");
}

void checkMessage(const QByteArray &der, int depth) {
    const std::optional<SignedMessage> message = SignedMessage::parse(der);
    if (!message)
        return;
    require(!SignedMessage::parse(der + '\0'), "nothing stands behind a signature");
    static const QByteArray sharedObject = testroot::bytesOf("signed.so");
    checkContent(*message, sharedObject);
    if (const auto digest = message->imageDigest())
        checkContent(*message, digest->content);
    const SignerInfo signer = message->signer();
    if (message->checkCertificates(signer.counterSigningTime) == platform::Trust::Good)
        require(testroot::isKnownMaker(signer.signerName), "only whom the root vouches for is trusted");
    const QVector<QByteArray> nested = message->nested();
    for (const QByteArray &inner : nested) {
        require(der.contains(inner), "a nested signature stands in the outer one");
        if (depth < DeepestNesting)
            checkMessage(inner, depth + 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool isInstalled = testroot::install();
    require(isInstalled, "the test's root is the only one");
    checkMessage(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)), 0);
    ERR_clear_error();
    return 0;
}
