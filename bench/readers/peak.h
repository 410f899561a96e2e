// Memory that one read takes.
#pragma once

#include <cstdint>
#include <string>

#include "readers/reader.h"

namespace veltrace::bench {

struct Peak {
    std::uint64_t bytes = 0;        ///< most that the process grew by
    std::uint64_t nanoseconds = 0;  ///< of this first read, new memory included
};

/// Reads one file once. Throws std::runtime_error when the system does not tell.
[[nodiscard]] Peak peakOf(Reader& reader, const std::string& path);

}  // namespace veltrace::bench
