#include "platform/memoryreturn.h"

#include <malloc.h>

namespace {
/// Below the size of a thumbnail's source; what is smaller comes and goes too often to be mapped each time.
constexpr int LargeBlock = 256 * 1024; // bytes
} // namespace

void platform::returnLargeBlocks() {
    // A threshold that is set is no longer changed by what is freed.
    ::mallopt(M_MMAP_THRESHOLD, LargeBlock);
}

void platform::returnFreedMemory() {
    ::malloc_trim(0);
}
