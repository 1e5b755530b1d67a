#include "services/wyvern.h"

#include <utility>

namespace {

/// The client's callback takes no argument that could say whose it is.
std::function<void()> &crashCallback() {
    static std::function<void()> callback;
    return callback;
}

void onCrash() {
    if (crashCallback())
        crashCallback()();
}

} // namespace

bool Wyvern::start(const QString &libraryPath, const QString &languageLibraryPath, const QString &product,
                   const QString &versionTag) {
    if (isLoaded())
        return true;
    SignedLibrary library(libraryPath);
    Functions functions;
    functions.processInitialize =
        library.resolve<decltype(functions.processInitialize)>("WyvernCProcessInitializeW");
    functions.processFinalize = library.resolve<void (*)()>("WyvernCProcessFinalizeW");
    functions.threadInitialize = library.resolve<void (*)()>("WyvernCThreadInitializeW");
    functions.threadFinalize = library.resolve<void (*)()>("WyvernCThreadFinalizeW");
    if (!functions.isWhole())
        return false;
    m_library = std::move(library);
    m_functions = functions;
    m_product = product.toStdWString();
    m_versionTag = versionTag.toStdWString();
    m_languageLibrary = languageLibraryPath.toStdWString();
    m_functions.processInitialize(m_product.c_str(), m_versionTag.c_str(), m_languageLibrary.c_str(),
                                  onCrash);
    return true;
}

Wyvern::~Wyvern() {
    if (!isLoaded())
        return;
    endThread();
    // It would otherwise leave its hooks behind, which lead into a library that is gone.
    m_functions.processFinalize();
    crashCallback() = nullptr;
}

void Wyvern::setCallback(std::function<void()> callback) {
    if (isLoaded())
        crashCallback() = std::move(callback);
}

void Wyvern::startThread() {
    if (!isLoaded() || m_watchesThread)
        return;
    m_watchesThread = true;
    m_functions.threadInitialize();
}

void Wyvern::endThread() {
    if (std::exchange(m_watchesThread, false))
        m_functions.threadFinalize();
}
