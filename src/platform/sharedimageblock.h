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

/// Whether the block that stands under the key was made by this user and nobody else may touch it. Keys can
/// be guessed, and a stranger may have made a block under ours first. Ask while holding the block's lock.
bool isBlockOfThisUserAlone(const QString &nativeKey);

} // namespace platform
