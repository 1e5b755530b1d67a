#pragma once

#include "fuzz/support/scratchfolder.h"
#include "platform/filesignature.h"

/// The signed files that the tests use too, and their root as the only one that this process trusts.
namespace testroot {

inline QString fixture(const QString &name) {
    return QStringLiteral(TINDRA_SIGNATURES "/") + name;
}

inline QByteArray bytesOf(const char *name) {
    const QByteArray bytes = contentOf(fixture(QLatin1String(name)));
    require(!bytes.isEmpty(), "the signed files of the tests are there");
    return bytes;
}

/// Once a process, before the first check.
inline bool install() {
    platform::setTrustedRoots(fixture(QStringLiteral("root.pem")));
    return QFile::exists(fixture(QStringLiteral("root.pem")));
}

/// The makers that the root vouches for.
inline bool isKnownMaker(const QString &name) {
    static const QStringList makers{QStringLiteral("Norvane Corp."), QStringLiteral("Quillgate Corp."),
                                    QStringLiteral("Vellumark Corp."), QStringLiteral("Other Corp.")};
    return makers.contains(name);
}

} // namespace testroot
