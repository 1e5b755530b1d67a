#pragma once

#include "services/signedlibrary.h"

#include <functional>
#include <string>

/// The crash-report client of older systems, bound at run time; one per process.
///
/// docs/services.md tells its functions, all of which it must have. Without the library every call does
/// nothing and the program runs the same. GUI thread only, but for the callback.
class Wyvern {
public:
    Wyvern() = default;
    ~Wyvern(); ///< ends and unloads the client
    Wyvern(const Wyvern &) = delete;
    Wyvern &operator=(const Wyvern &) = delete;

    bool isLoaded() const { return m_library.isLoaded(); }
    /// Loads the client and arms it for this product and version; false without a library that is whole.
    /// `languageLibraryPath` names the texts that the client shows.
    bool start(const QString &libraryPath, const QString &languageLibraryPath, const QString &product,
               const QString &versionTag);
    /// What happens when the program crashes, in the thread that crashed.
    void setCallback(std::function<void()> callback);
    /// Watches the thread that calls this, until that thread calls the end.
    void startThread();
    void endThread();

private:
    struct Functions {
        void (*processInitialize)(const wchar_t *product, const wchar_t *versionTag,
                                  const wchar_t *languageLibrary, void (*callback)()) = nullptr;
        void (*processFinalize)() = nullptr;
        void (*threadInitialize)() = nullptr;
        void (*threadFinalize)() = nullptr;
        bool isWhole() const {
            return processInitialize && processFinalize && threadInitialize && threadFinalize;
        }
    };

    SignedLibrary m_library;
    Functions m_functions;
    bool m_watchesThread = false;
    // The client keeps looking at them.
    std::wstring m_product;
    std::wstring m_versionTag;
    std::wstring m_languageLibrary;
};
