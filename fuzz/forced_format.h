// Inputs that are read as the format under test.
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/bytes.h"

namespace veltrace::fuzz {

/// These bytes, beginning as a classic TIFF, BigTIFF or JPEG file does: what would be refused for
/// its first bytes shows nothing about the rest. Those whose first byte is a multiple of 16, and
/// those too short to have a signature, stay as they are.
[[nodiscard]] test::Bytes asClassicTiff(const std::uint8_t* data, std::size_t size);
[[nodiscard]] test::Bytes asBigTiff(const std::uint8_t* data, std::size_t size);
[[nodiscard]] test::Bytes asJpeg(const std::uint8_t* data, std::size_t size);

}  // namespace veltrace::fuzz
