// The open files of this process.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace veltrace::test {

[[nodiscard]] inline std::ptrdiff_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

}  // namespace veltrace::test
