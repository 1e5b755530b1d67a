#pragma once

#include "services/signedlibrary.h"

#include <QByteArray>

#include <optional>

/// The library that updates the maker's products, bound at the first call.
///
/// The editor keeps one and calls nothing of it: an update is asked for through the capture process. Each
/// call takes the product's name and gives the library's number, nothing without the library or the function.
/// docs/services.md tells the functions. GUI thread only.
class OnlineUpdate {
public:
    explicit OnlineUpdate(const QString &libraryPath) : m_path(libraryPath) {}

    std::optional<int> init(const QByteArray &product);
    std::optional<int> exit(const QByteArray &product);
    std::optional<int> updateProduct(const QByteArray &product);
    std::optional<int> checkEula(const QByteArray &product);

private:
    std::optional<int> call(const char *function, const QByteArray &product);

    QString m_path;
    std::optional<SignedLibrary> m_library; ///< as soon as it was looked for
};
