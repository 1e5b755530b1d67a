#pragma once

namespace platform {

/// Locks the open file or folder for its holder alone, and waits for that no longer than the limit; 0 only
/// tries. The system's own wait has no end, and a holder may have been stopped. Any thread.
bool lockWithin(int descriptor, int limitMs);

} // namespace platform
