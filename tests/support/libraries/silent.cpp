#include "support/recordedcall.h"

// Statistics that begin and know nothing else.

EXPORTED int Ostler_Initialize(const wchar_t *product) {
    recordCall("Ostler_Initialize " + narrow(product));
    return 1;
}
