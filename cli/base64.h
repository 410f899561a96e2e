// Bytes as text: base 64 of RFC 4648, section 4, with padding.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrace::cli {

[[nodiscard]] std::string base64(std::string_view bytes);

/// The bytes of `text`; nothing for any text that `base64` does not return.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace veltrace::cli
