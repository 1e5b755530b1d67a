#pragma once

#include "services/signedlibrary.h"

/// The crash-report client of current systems, bound at run time; docs/services.md tells its functions.
/// Without the library every call does nothing. GUI thread only.
class Wyvern2 {
public:
    Wyvern2() = default;
    ~Wyvern2() { end(); }
    Wyvern2(const Wyvern2 &) = delete;
    Wyvern2 &operator=(const Wyvern2 &) = delete;

    bool isStarted() const { return m_library.isLoaded(); }
    /// `endpoint`: address of the service that reports go to. `releaseTag` names product and version.
    bool start(const QString &libraryPath, const QString &endpoint, const QString &releaseTag,
               const QString &language);
    /// A note that goes along with the next report.
    void addBreadCrumb(const QString &note);
    /// Ends and unloads the client.
    void end();

private:
    SignedLibrary m_library;
};
