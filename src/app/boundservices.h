#pragma once

#include "services/bannerlibrary.h"
#include "services/onlineupdate.h"
#include "services/wyvern2.h"

class Wyvern;

/// The optional libraries of the maker's around the editor: web banners, usage statistics, online update and
/// crash reports. Where one is missing the program is without that service and otherwise the same.
///
/// Starts and ends those of them that run with the main window. GUI thread only.
class BoundServices {
public:
    /// Starts the libraries of the program's folder. `olderCrashClient` is the process's own, which
    /// outlives this object, or null.
    explicit BoundServices(Wyvern *olderCrashClient);
    ~BoundServices() { end(); }
    BoundServices(const BoundServices &) = delete;
    BoundServices &operator=(const BoundServices &) = delete;

    /// Begins to watch for crashes. Apart from the others, since the host of the AI tools starts ahead of it.
    void startCrashClient();

    BannerLibrary &banner() { return m_banner; }
    /// Ends each service that runs; the order is what the libraries see of the program's end.
    void end();

private:
    Wyvern *m_olderCrashClient;
    BannerLibrary m_banner;
    OnlineUpdate m_update;
    Wyvern2 m_crashClient;
};
