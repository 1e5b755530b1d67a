#include "platform/sharedimageblock.h"

#include "platform/namedlock.h"

platform::SharedImageBlock platform::sharedImageBlock() {
    const QString name = QStringLiteral("TindraImageMemory");
    const QString folder = privateRuntimeFolder();
    // The system derives the block's id from a file: a relative path would be another file for a process
    // with another working folder, and one in an open folder could be anybody's.
    return {folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name, name};
}
