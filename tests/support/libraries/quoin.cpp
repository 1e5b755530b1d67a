#include "support/recordedcall.h"

// The first banner library.

EXPORTED void Quoin_Initialize() {
    recordCall("Quoin_Initialize");
}

EXPORTED void Quoin_Finalize() {
    recordCall("Quoin_Finalize");
}

EXPORTED void Quoin_CreateArea() {
    recordCall("Quoin_CreateArea");
}

EXPORTED void Quoin_CreateAreaEx() {
    recordCall("Quoin_CreateAreaEx");
}

EXPORTED void Quoin_DeleteArea(const wchar_t *areaId) {
    recordCall("Quoin_DeleteArea " + narrow(areaId));
}

EXPORTED void Quoin_SetScale() {
    recordCall("Quoin_SetScale");
}

EXPORTED void Quoin_SetOpenBrowserCallback() {
    recordCall("Quoin_SetOpenBrowserCallback");
}

EXPORTED void Quoin_PrepareStats() {
    recordCall("Quoin_PrepareStats");
}
