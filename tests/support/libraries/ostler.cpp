#include "support/recordedcall.h"

#include <atomic>

// The usage statistics.

namespace {

std::atomic<int> inside{0};

struct Entry {
    Entry() {
        if (++inside > 1)
            recordCall("two at once");
    }
    ~Entry() { --inside; }
};

} // namespace

EXPORTED int Ostler_Initialize(const wchar_t *product) {
    recordCall("Ostler_Initialize " + narrow(product));
    return std::getenv("TINDRA_TEST_REFUSE") ? 0 : 1;
}

EXPORTED int Ostler_InitializeEx(const wchar_t *product) {
    recordCall("Ostler_InitializeEx " + narrow(product));
    return 1;
}

EXPORTED void Ostler_Finalize() {
    const Entry entry;
    recordCall("Ostler_Finalize");
}

EXPORTED int Ostler_ExecuteAction(const wchar_t *id) {
    const Entry entry;
    recordCall("Ostler_ExecuteAction " + narrow(id));
    return narrow(id) == "refused" ? 0 : 1;
}
