#pragma once

#include <QString>

/// The management program of the maker's tool family, which installs what the AI tools need: the library that
/// hosts the plug-ins and the account library. Being without it is normal. GUI thread only.
namespace ManagementProgram {

/// Where it is installed: what the machine's configuration says, where that is a folder, else its usual
/// place.
QString folder();
/// Path of one of its libraries, whether it is there or not.
QString libraryPath(const QString &baseName);

/// Whether another product of the family is installed without it.
bool isMissed();

/// Has it look up the user's rights anew, and waits for the end of that, `timeout` milliseconds at most.
/// False without the program, when it cannot be started, and when it takes longer; it is never ended.
/// The program is found by its place alone: nobody looks at who signed it.
bool refreshUser(int timeout);

} // namespace ManagementProgram
