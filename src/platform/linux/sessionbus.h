#pragma once

#include <QString>

namespace platform {

/// The address of the session bus, empty where there is none. Ask before touching the bus at all: its
/// library would start a bus of its own then, on which nobody listens.
QString sessionBusAddress();

} // namespace platform
