#pragma once

#include <QtGlobal>

namespace platform {

// Questions to the X server over the connection of the application; only on the platform "xcb".

/// The server's number for a name.
quint32 x11Atom(const char *name);

/// Who holds the clipboard selection of the X server.
enum class SelectionOwner { Nobody, ThisProcess, Other };
SelectionOwner clipboardSelectionOwner();

} // namespace platform
