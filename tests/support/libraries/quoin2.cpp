#include "support/recordedcall.h"

// The second banner library.

EXPORTED void Create() {
    recordCall("Create");
}

EXPORTED void Close(const wchar_t *areaId) {
    recordCall("Close " + narrow(areaId));
}

EXPORTED void SetScale() {
    recordCall("SetScale");
}

EXPORTED void Finalize() {
    recordCall("Finalize");
}

EXPORTED void CopyAdCookies() {
    recordCall("CopyAdCookies");
}

EXPORTED void SetOpenBrowserCallback() {
    recordCall("SetOpenBrowserCallback");
}

EXPORTED void PrepareStats() {
    recordCall("PrepareStats");
}
