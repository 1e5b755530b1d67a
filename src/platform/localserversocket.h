#pragma once

#include <QtGlobal>

class QString;

namespace platform {

/// The full path of the local socket with that name, in a folder that belongs to this user alone; the
/// plain name where there is no such folder.
QString localSocketPath(const QString &name);
/// Whether the process at the other end of a connected local socket runs as the current user.
bool isPeerCurrentUser(qintptr socketDescriptor);

} // namespace platform
