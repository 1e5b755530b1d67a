#pragma once

class QString;

/// The folder of the session's temporary captures, created if missing and private to this user; empty
/// when there is no writable place for it. Without a trailing slash.
QString workFolder();

/// The file behind all links and detours of a path, also one that is still to be made. Of what lies in
/// missing folders, the nearest folder that exists counts as the place.
QString realPath(const QString &path);

/// Whether the file or folder of that path lies in the work folder, or would: no place for what a user
/// saves, since an exit clears it. A link there counts, wherever it leads.
bool isInWorkFolder(const QString &path);

/// Whether this process is the one that may clear the work folder: the first to ask of those that run. Two
/// editors can meet there that do not know of each other, started with different environments. Decided at the
/// first call, for the life of the process. GUI thread only.
bool ownsWorkFolder();
