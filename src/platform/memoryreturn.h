#pragma once

namespace platform {

/// Lets large blocks, pictures above all, go back to the system as soon as they are freed. Left to itself the
/// allocator learns from the first freed picture to keep the next ones on its heap, where each leaves a hole
/// that no picture of another size fits into. To be asked before the first picture and before a second
/// thread.
void returnLargeBlocks();

} // namespace platform
