#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/// For the sources of substitute libraries: what they export, and how they tell the test of a call.

#define EXPORTED extern "C" __attribute__((visibility("default")))

/// Appends a line to the list that the test reads by `SubstituteLibraries::calls()`.
inline void recordCall(const std::string &call) {
    const char *path = std::getenv("TINDRA_TEST_CALLS");
    FILE *file = path ? std::fopen(path, "a") : nullptr;
    if (!file)
        return;
    std::fprintf(file, "%s\n", call.c_str());
    std::fclose(file);
}

/// A wide text in UTF-8, as far as tests need it: without surrogates, since wide characters have 32 bits
/// here.
inline std::string narrow(const wchar_t *text) {
    std::string result;
    for (; text && *text; ++text) {
        const auto code = static_cast<unsigned>(*text);
        if (code < 0x80) {
            result += static_cast<char>(code);
        } else if (code < 0x800) {
            result += static_cast<char>(0xC0 | (code >> 6));
            result += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            result += static_cast<char>(0xE0 | (code >> 12));
            result += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}
