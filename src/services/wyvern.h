#pragma once

class QString;

/// The crash-report client. There is no client library for this system, so nothing is ever loaded and
/// every call does nothing; the program runs the same with it and without.
class Wyvern {
public:
    bool isLoaded() const { return false; }
    /// Loads the library and arms it for this product and version; false without a library.
    bool start(const QString &libraryPath, const QString &languageLibraryPath, const QString &product,
               const QString &versionTag);
    void end();
};
