// What a fuzz target holds to be true.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace veltrace::fuzz {

/// Ends the process, and says in a sentence what is wrong, unless `holds`.
inline void require(bool holds, const char* otherwise) {
    if (!holds) {
        std::fprintf(stderr, "finding: %s\n", otherwise);
        std::abort();
    }
}

}  // namespace veltrace::fuzz
