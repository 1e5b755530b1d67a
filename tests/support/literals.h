#pragma once

#include <QString>

/// "text"_qs, for tables and lists of texts.
inline QString operator""_qs(const char *text, std::size_t size) {
    return QString::fromUtf8(text, int(size));
}
