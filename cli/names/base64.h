// Bytes that stand in JSON as base64.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrace::cli {

/// The bytes of `text`, base64 with padding (RFC 4648, section 4); nothing for any other text.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace veltrace::cli
