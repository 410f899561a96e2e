// The formats of the output.
#pragma once

#include <cstdint>

namespace veltrace::cli {

enum class Format : std::uint8_t { text, json, ndjson, csv };

}  // namespace veltrace::cli
