#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process as a finding when what must hold for every input does not hold for this one.
inline void require(bool holds, const char *property) {
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", property);
    std::abort();
}
