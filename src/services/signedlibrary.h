#pragma once

#include "platform/loadedlibrary.h"

#include <QString>

#include <memory>

/// An optional library of the maker's, bound at run time; being without it is normal.
///
/// It is loaded only when one of the accepted makers signed it, the certificates lead to a root of the
/// system, and another process has loaded and unloaded it without harm. What is loaded are the bytes that
/// were checked. A library that is not there costs one look at its path. GUI thread or any other, one at a
/// time.
class SignedLibrary {
public:
    SignedLibrary() = default; ///< none
    explicit SignedLibrary(const QString &path);
    ~SignedLibrary(); ///< unloads: nothing that was resolved may be called afterwards
    SignedLibrary(SignedLibrary &&other) noexcept;
    SignedLibrary &operator=(SignedLibrary &&other) noexcept;

    bool isLoaded() const { return m_library != nullptr; }

    /// The function of that name, null when it or the library is missing. `Function` is a pointer type, and
    /// what it says of arguments and result is all that is known of them.
    template <typename Function> Function resolve(const char *name) const {
        return m_library ? reinterpret_cast<Function>(m_library->resolve(name)) : nullptr;
    }

private:
    std::unique_ptr<platform::LoadedLibrary> m_library;
};

/// The name of a library's file on this system: "kilnworks" is "kilnworks.so".
QString libraryFileName(const QString &baseName);
