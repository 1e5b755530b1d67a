#pragma once

class QString;

namespace platform {

/// Whether this start of the program is one of a clipboard keeper: a small process without a window that
/// offers a copied image in place of the program that copied it, until somebody else copies something.
/// To be asked before anything else happens in `main`.
bool isClipboardKeeperCall(int argc, char **argv);

/// Runs the keeper with the image that came through standard input; the exit code.
int runClipboardKeeper(int argc, char **argv);

/// Tests only: the program that is started as the keeper instead of this one; empty brings this one back.
void setClipboardKeeperProgram(const QString &path);

} // namespace platform
