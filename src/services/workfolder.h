#pragma once

class QString;

/// The folder of the session's temporary captures, created if missing and private to this user; empty
/// when there is no writable place for it. Without a trailing slash.
QString workFolder();
