#pragma once

#include <cstdio>
#include <cstdlib>

namespace KestryCore {

/// Ends the program with a message when a property does not hold, so that the fuzzer keeps the
/// input. Unlike `assert` it is there in every build.
inline void require(bool holds, const char* property)
{
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", property);
        std::abort();
    }
}

} // namespace KestryCore
