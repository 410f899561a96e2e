// How much address space this process has taken.
#pragma once

#include <cstddef>
#include <fstream>

namespace veltrace::test {

/// Pages of all mappings; 0 when the system does not report them.
inline std::size_t pagesMapped() {
    std::ifstream file("/proc/self/statm");
    std::size_t pages = 0;
    file >> pages;
    return pages;
}

}  // namespace veltrace::test
