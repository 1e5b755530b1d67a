#pragma once

class QString;

/// Whether the current user may list, read, create and delete files in the folder. False for anything
/// that is no folder, and when the question cannot be answered.
bool isDirectoryWritable(const QString &path);

namespace platform {

/// Creates the folder, with its missing parents, so that nobody but this user can look into it, and takes
/// other people's rights from one that exists already. False when it cannot be had so.
bool makePrivateFolder(const QString &path);

/// Whether what this user puts into the folder stays his: nobody else may move it, or a folder above it.
bool keepsOurEntries(const QString &path);

} // namespace platform
