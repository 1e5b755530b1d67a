// A signed file with changes: which file; how many bytes fewer or more; then place and new value of each
// change. No change of what is signed goes unnoticed, and none makes another signer.

#include "fuzz/support/input.h"
#include "fuzz/support/testroot.h"
#include "platform/filesignature.h"

#include <iterator>

using platform::Trust;

namespace {

// Places in the signed executables, which have their headers at 64.
constexpr int CheckSum = 64 + 24 + 64;
constexpr int CheckSumSize = 4;
constexpr int TableEntry = 64 + 24 + 112 + 4 * 8;
constexpr int TableEntrySize = 8;
constexpr int ImageEnd = 1024;

constexpr int MostBytesBehind = 16;

struct Fixture {
    const char *name;
    const char *signature; ///< of its own file, or null
};
constexpr Fixture Files[] = {{"norvane.dll", nullptr},     {"nested.dll", nullptr},
                             {"stamped.dll", nullptr},     {"stampedlate.dll", nullptr},
                             {"weak.dll", nullptr},        {"self.dll", nullptr},
                             {"signed.so", "norvane.p7s"}, {"signed.so", "other.p7s"}};

void change(QByteArray *bytes, Input *input) {
    const int difference = input->number(-MostBytesBehind, MostBytesBehind);
    if (difference < 0)
        bytes->chop(-difference);
    else
        bytes->append(QByteArray(difference, '\0'));
    while (!input->atEnd()) {
        const int place = input->word();
        const char value = static_cast<char>(input->byte());
        if (place < bytes->size())
            (*bytes)[place] = value;
    }
}

/// What of an executable is signed, when its table stands where it stood.
QByteArray signedPart(const QByteArray &bytes) {
    QByteArray part = bytes.left(ImageEnd);
    part.replace(TableEntry, TableEntrySize, QByteArray());
    return part.replace(CheckSum, CheckSumSize, QByteArray());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool isInstalled = testroot::install();
    require(isInstalled, "the test's root is the only one");
    Input input(data, size);
    const Fixture &chosen = Files[input.byte() % static_cast<int>(std::size(Files))];
    const QByteArray original = testroot::bytesOf(chosen.name);
    platform::SignedFile file;
    file.isRead = true;
    file.bytes = original;
    file.hasSignatureFile = chosen.signature != nullptr;
    if (file.hasSignatureFile)
        file.signature = testroot::bytesOf(chosen.signature);
    change(file.hasSignatureFile && !input.flag() ? &file.signature : &file.bytes, &input);

    const platform::SignatureCheck full = platform::checkSignature(file, false);
    const platform::SignatureCheck cheap = platform::checkSignature(file, true);
    require((full.trust == Trust::Good) == !full.signers.isEmpty(),
            "a good file has signers, and no other has");
    if (full.trust == Trust::Good) {
        require(cheap.trust == Trust::Good, "what holds in full holds by the cheap check too");
        for (const SignerInfo &signer : full.signers)
            require(testroot::isKnownMaker(signer.signerName), "no change makes another signer");
    }
    if (cheap.trust == Trust::Good) {
        const bool isKept =
            chosen.signature ? file.bytes == original : signedPart(file.bytes) == signedPart(original);
        require(isKept, "no change of what is signed goes unnoticed");
    }
    return 0;
}
