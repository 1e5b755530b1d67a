#include "support/recordedcall.h"

namespace {

__attribute__((constructor)) void crash() {
    recordCall("crashes");
    __builtin_trap();
}

} // namespace
