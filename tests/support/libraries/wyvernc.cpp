#include "support/recordedcall.h"

// The crash client of older systems. It crashes on demand as soon as a thread is watched.

namespace {

void (*onCrash)() = nullptr;
const wchar_t *keptProduct = nullptr;

} // namespace

EXPORTED void WyvernCProcessInitializeW(const wchar_t *product, const wchar_t *versionTag,
                                        const wchar_t *languageLibrary, void (*callback)()) {
    onCrash = callback;
    keptProduct = product;
    recordCall("WyvernCProcessInitializeW " + narrow(product) + ' ' + narrow(versionTag) + ' ' +
               narrow(languageLibrary));
}

EXPORTED void WyvernCProcessFinalizeW() {
    recordCall("WyvernCProcessFinalizeW");
}

EXPORTED void WyvernCThreadInitializeW() {
    recordCall("WyvernCThreadInitializeW " + narrow(keptProduct));
    if (std::getenv("TINDRA_TEST_CRASH"))
        onCrash();
}

#ifndef WITHOUT_THREAD_END
EXPORTED void WyvernCThreadFinalizeW() {
    recordCall("WyvernCThreadFinalizeW");
}
#endif
