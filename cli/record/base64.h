// Bytes as text that JSON takes.
#pragma once

#include <string>
#include <string_view>

namespace veltrace::cli {

/// `bytes` in the base 64 of RFC 4648, padded.
[[nodiscard]] std::string base64(std::string_view bytes);

}  // namespace veltrace::cli
