#pragma once

#include <QtGlobal>

class QImage;

namespace platform {

/// How a copied image travels to the clipboard keeper: an anonymous file in memory with this header and
/// then the rows of the image in `QImage::Format_RGB32`, without gaps. Such a file is complete before the
/// keeper starts, so nobody has to feed a pipe, and it outlives a program that is killed.
struct KeptImageHeader {
    static constexpr quint32 Magic = 0x54434b31;

    quint32 magic = Magic;
    quint32 width = 0;
    quint32 height = 0;
    /// The server's time of the copy: the keeper must not take over what was copied later.
    quint32 copyTime = 0;
};

constexpr int KeptImageBytesPerPixel = 4;

/// Milliseconds by which the keeper's claim is later than the copy: the program that copied takes no notice
/// of a loss at the very same time.
constexpr quint32 KeeperDelay = 1;

/// The argument by which the program knows that it is to be the keeper.
constexpr char ClipboardKeeperArgument[] = "--keep-clipboard";

/// The file with the image, or -1. The caller closes it.
int writeKeptImage(const QImage &image, quint32 copyTime);
/// The image in an open file, as a view that lives as long as the process; null if there is none.
QImage readKeptImage(int descriptor, quint32 *copyTime);

} // namespace platform
