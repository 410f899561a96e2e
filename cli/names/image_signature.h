// Tells images from other files by their first bytes.
#pragma once

#include <string_view>

namespace veltrace::cli {

/// Whether the module has a reader for a file that begins like this: FF D8 (JPEG), or "II" or "MM"
/// and the version of TIFF or BigTIFF. Needs four bytes, or all bytes of a shorter file.
[[nodiscard]] bool isImageStart(std::string_view firstBytes);

/// The same of an open file, whose position stays where it is. True also when it cannot be read, so
/// that somebody says why.
[[nodiscard]] bool mayBeImage(int descriptor);

}  // namespace veltrace::cli
