#pragma once

#include <QString>

namespace platform {

/// The address of a session bus that answers, empty where there is none. Ask before connecting: without a bus
/// its library would start one of its own, on which nobody listens, and one that is stopped would hold the
/// caller up for 25 s. Only buses on local sockets count. Takes 250 ms at most of a silent bus. GUI thread
/// only.
QString sessionBusAddress();

} // namespace platform
