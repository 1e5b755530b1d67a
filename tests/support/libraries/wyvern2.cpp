#include "support/recordedcall.h"

// The crash client of current systems.

EXPORTED void Wyvern_InitModuleW(const wchar_t *endpoint, const wchar_t *releaseTag,
                                 const wchar_t *language) {
    recordCall("Wyvern_InitModuleW " + narrow(endpoint) + ' ' + narrow(releaseTag) + ' ' + narrow(language));
}

EXPORTED void Wyvern_AddBreadCrumbW(const wchar_t *note) {
    recordCall("Wyvern_AddBreadCrumbW " + narrow(note));
}

EXPORTED void Wyvern_ExitModule() {
    recordCall("Wyvern_ExitModule");
}
