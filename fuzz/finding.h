// How a fuzz target tells what it found.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace veltrace::fuzz {

/// Ends the process with this sentence on stderr.
[[noreturn]] inline void reportFinding(std::string_view sentence) {
    std::cerr << "finding: " << sentence << std::endl;
    std::abort();
}

/// The same unless `holds`.
inline void require(bool holds, const char* otherwise) {
    if (!holds) {
        reportFinding(otherwise);
    }
}

}  // namespace veltrace::fuzz
