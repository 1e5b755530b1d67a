#pragma once

#include <QStringList>

namespace platform {

/// Splits a command line into arguments by the rules of the capture process's platform.
///
/// Blanks and tabs separate. The first token (the program) ends at the next quote if it begins with
/// one, else at the first blank, and knows no escapes. In the others 2n backslashes before a quote
/// give n backslashes and the quote opens or closes; 2n+1 give n and a literal quote; backslashes
/// elsewhere stand for themselves; `""` inside quotes is a literal quote and closes them. An empty line
/// gives an empty list: this program has no use for its own path there.
QStringList splitCommandLine(const QString &line);

} // namespace platform
