#pragma once

#include <cstdio>
#include <cstdlib>

namespace Norlis::Fuzz {

/// Ends the program when a promise is broken: what both a fuzzer and a test notice.
inline void Require(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (!condition) {
        std::fprintf(stderr, "%s:%d: a promise is broken\n", file, line);
        std::abort();
    }
}

} // namespace Norlis::Fuzz
