#include "support/recordedcall.h"

#include <unistd.h>

namespace {

__attribute__((constructor)) void hang() {
    // A child of its own must not outlive the trial either.
    ::fork();
    recordCall("process " + std::to_string(::getpid()));
    for (;;)
        ::pause();
}

} // namespace
