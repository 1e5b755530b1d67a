#pragma once

namespace platform {

/// Lets large blocks, pictures above all, go back to the system as soon as they are freed. Left to itself the
/// allocator learns from the first freed picture to keep the next ones on its heap, where each leaves a hole
/// that no picture of another size fits into. To be asked before the first picture and before a second
/// thread.
void returnLargeBlocks();

/// Gives back what was freed between blocks that live on: sessions full of small blocks leave a heap of which
/// half is holes. Takes some milliseconds, and what is used next has to be asked for anew, so it is for
/// moments in which nobody waits. From any thread.
void returnFreedMemory();

} // namespace platform
