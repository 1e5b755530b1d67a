#pragma once

#include <QtGlobal>

class QString;

namespace platform {

/// The full path of the local socket with that name, in a folder that belongs to this user alone; empty where
/// there is no such folder: in an open one a stranger could sit at the name.
QString localSocketPath(const QString &name);
/// Whether the process at the other end of a connected local socket runs as the current user.
bool isPeerCurrentUser(qintptr socketDescriptor);

} // namespace platform
