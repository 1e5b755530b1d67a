// A signed file with changes: which file; how many bytes fewer or more; then place and new value of each
// change. No change of what is signed goes unnoticed, and none makes another signer.

#include "fuzz/support/input.h"
#include "fuzz/support/scratchfolder.h"
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
/// Seeds name them by their place (see make-corpus).
constexpr Fixture Files[] = {{"norvane.dll", nullptr},
                             {"nested.dll", nullptr},
                             {"stamped.dll", nullptr},
                             {"stampedlate.dll", nullptr},
                             {"weak.dll", nullptr},
                             {"self.dll", nullptr},
                             {"signed.so", "norvane.p7s"},
                             {"signed.so", "other.p7s"},
                             {"signed.so", "named.p7s"},
                             {"signed.so", nullptr},
                             {"unsigned.dll", nullptr},
                             {"expired.dll", nullptr},
                             {"tls.dll", nullptr},
                             {"plain.dll", nullptr},
                             {"encipher.dll", nullptr},
                             {"weakchain.dll", nullptr},
                             {"chained.dll", nullptr},
                             {"chainedany.dll", nullptr},
                             {"chainedserver.dll", nullptr},
                             {"chainedmaker.dll", nullptr},
                             {"counterstamped.dll", nullptr},
                             {"countermaker.dll", nullptr},
                             {"counterweak.dll", nullptr},
                             {"tokenstamped.dll", nullptr},
                             {"tokenchanged.dll", nullptr},
                             {"tokenweaklysigned.dll", nullptr}};

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

/// As it comes from the disk.
platform::SignedFile writtenAndRead(const platform::SignedFile &file) {
    const ScratchFolder folder;
    const QString path = folder.write(QStringLiteral("file"), file.bytes);
    if (file.hasSignatureFile)
        folder.write(QStringLiteral("file.p7s"), file.signature);
    platform::SignedFile read = platform::readSignedFile(path);
    require(read.isRead && read.bytes == file.bytes, "what is checked is what the file holds");
    const bool isShared = file.bytes.startsWith("\177ELF");
    require(read.hasSignatureFile == (file.hasSignatureFile && isShared),
            "a signature beside the file is that of a shared object");
    require(!read.hasSignatureFile || read.signature == file.signature,
            "what is checked is what its signature's file holds");
    return read;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool isInstalled = testroot::install();
    require(isInstalled, "the test's root is the only one");
    Input input(data, size);
    const Fixture &chosen = Files[input.byte() % static_cast<int>(std::size(Files))];
    const QByteArray original = testroot::bytesOf(chosen.name);
    platform::SignedFile changed;
    changed.bytes = original;
    changed.hasSignatureFile = chosen.signature != nullptr;
    if (changed.hasSignatureFile)
        changed.signature = testroot::bytesOf(chosen.signature);
    change(changed.hasSignatureFile && !input.flag() ? &changed.signature : &changed.bytes, &input);
    const platform::SignedFile file = writtenAndRead(changed);

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
