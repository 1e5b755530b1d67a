#include "support/recordedcall.h"

extern "C" int isNowhere();

EXPORTED int call() {
    return isNowhere();
}
