#include "services/signedlibrary.h"

#include "platform/filesignature.h"
#include "services/certificatetool.h"
#include "services/tracelog.h"

#include <QFileInfo>

namespace {

std::unique_ptr<platform::LoadedLibrary> load(const QString &path) {
    if (!QFileInfo(path).isFile())
        return nullptr;
    const QString tag = QStringLiteral("SignedLibrary");
    const platform::SignedFile file = platform::readSignedFile(path);
    if (!verifySignature(path, file, true)) {
        trace(1, tag, "[ERROR]not signed by an accepted maker_(%ls)", path.utf16());
        return nullptr;
    }
    std::unique_ptr<platform::LoadedLibrary> library = platform::loadLibrary(file.bytes);
    if (!library)
        trace(1, tag, "[ERROR]cannot be loaded_(%ls)", path.utf16());
    return library;
}

} // namespace

SignedLibrary::SignedLibrary(const QString &path) : m_library(load(path)) {}
SignedLibrary::~SignedLibrary() = default;
SignedLibrary::SignedLibrary(SignedLibrary &&other) noexcept = default;
SignedLibrary &SignedLibrary::operator=(SignedLibrary &&other) noexcept = default;

QString libraryFileName(const QString &baseName) {
    return platform::libraryFileName(baseName);
}
