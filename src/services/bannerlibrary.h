#pragma once

#include "services/signedlibrary.h"

#include <QHash>

/// The library that draws web banners into the areas of the main window, bound at run time.
///
/// There are two of them; the newer one needs the runtime of the system's web view and is taken where it has
/// that. docs/services.md tells their functions. Without a library every call does nothing. GUI thread only.
class BannerLibrary {
public:
    enum Kind { None, First, Second };

    ~BannerLibrary() { end(); }

    /// Binds the library that stands in that folder.
    Kind start(const QString &folder);
    Kind kind() const { return m_kind; }
    /// Whether the library has that function.
    bool has(const QByteArray &function) const { return m_functions.value(function) != nullptr; }
    /// Takes what was drawn in the area away, for example "AD_CAP_B01".
    void deleteArea(const QString &areaId);
    /// Ends and unloads the library.
    void end();

private:
    bool bind(Kind kind, const QString &path);
    template <typename Function> Function function(const char *name) const {
        return reinterpret_cast<Function>(m_functions.value(name));
    }

    Kind m_kind = None;
    SignedLibrary m_library;
    QHash<QByteArray, QFunctionPointer> m_functions; ///< null for those that the library lacks
};
