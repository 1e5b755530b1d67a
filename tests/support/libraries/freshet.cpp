#include "support/recordedcall.h"

// The online update.

EXPORTED int Freshet_Init(const char *product) {
    recordCall(std::string("Freshet_Init ") + product);
    return 1;
}

EXPORTED int Freshet_Exit(const char *product) {
    recordCall(std::string("Freshet_Exit ") + product);
    return 2;
}

EXPORTED int Freshet_UpdateProduct(const char *product) {
    recordCall(std::string("Freshet_UpdateProduct ") + product);
    return 3;
}

EXPORTED int Freshet_CheckEULA(const char *product) {
    recordCall(std::string("Freshet_CheckEULA ") + product);
    return 0;
}
