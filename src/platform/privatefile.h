#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace platform {

/// Of a file that nobody but this user may look into.
constexpr QFileDevice::Permissions PrivateFileRights = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Appends the bytes to the file in one piece, so that several processes may write to one file.
///
/// Folder and file are made when missing, for this user alone. A file that has reached `sizeLimit` bytes
/// is begun anew first. While another process keeps that from being done, the file grows beyond the limit; it
/// is waited for a second at most, and then not again for ten. Nothing is written, and the result is false,
/// when folder or file belong to somebody else, are links, or cannot be opened: the place may be one where
/// strangers lay traps. Any thread.
bool appendToPrivateFile(const QString &path, const QByteArray &bytes, qint64 sizeLimit);

} // namespace platform
