#pragma once

#include <QString>

namespace platform {

/// The shared memory block in which the capture process hands images over.
///
/// `nativeKey` goes to `QSharedMemory::setNativeKey`, `lockName` to a `NamedLock` that both sides hold
/// while they touch the block.
struct SharedImageBlock {
    QString nativeKey;
    QString lockName;
};
SharedImageBlock sharedImageBlock();

} // namespace platform
