#pragma once

#include <QString>

#include <array>

/// The text that `fill(buffer, Size)`, a call of one of the maker's libraries, writes into a buffer of `Size`
/// wide characters; empty when it fails.
///
/// A text that fills the buffer may come without an end: a character more than `fill` knows of ends it.
template <unsigned Size, typename Fill> QString readWideText(Fill fill) {
    std::array<wchar_t, Size + 1> buffer{};
    if (!fill(buffer.data(), Size))
        return QString();
    buffer.back() = L'\0';
    return QString::fromWCharArray(buffer.data());
}
