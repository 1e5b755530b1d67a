#include "support/recordedcall.h"

namespace {

__attribute__((destructor)) void crash() {
    recordCall("crashes at the end");
    __builtin_trap();
}

} // namespace
