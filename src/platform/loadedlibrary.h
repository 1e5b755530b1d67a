#pragma once

#include <QFunctionPointer>
#include <QString>

#include <memory>

class QByteArray;

namespace platform {

/// A library in the process, bound at run time.
///
/// It comes from bytes, not from a file, so that what was checked is what is loaded: nobody can put another
/// file in its place between the two. It therefore has no folder, and what it needs beside the system's
/// libraries is not looked for beside it.
class LoadedLibrary {
public:
    virtual ~LoadedLibrary() = default; ///< unloads
    /// Null when there is no such function.
    virtual QFunctionPointer resolve(const char *name) const = 0;
};

/// Loads a library that the caller trusts; null when it cannot be loaded.
///
/// What runs while a library is loaded and unloaded cannot be stopped once it has begun, so a process of its
/// own tries that first: one that crashes there or takes longer than five seconds is not loaded. Waits for
/// that process. The calls that follow are not guarded. Any thread.
std::unique_ptr<LoadedLibrary> loadLibrary(const QByteArray &bytes);

/// The name of a library's file: "ostler" is "ostler.so" here.
QString libraryFileName(const QString &baseName);

/// Whether this start of the program is one that tries a library. To be asked before anything else happens
/// in `main`.
bool isLibraryTrialCall(int argc, char **argv);

/// Loads and unloads the library that was handed over, and ends the process: with 0 when all went well.
[[noreturn]] void runLibraryTrial();

/// Tests only: the program that is started for a trial instead of this one; empty brings this one back.
void setLibraryTrialProgram(const QString &path);

} // namespace platform
