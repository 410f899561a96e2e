// Recognises images by their first bytes.
#pragma once

#include <string_view>

namespace veltrace::cli {

/// Whether the module reads files with these first bytes: FF D8 (JPEG), or "II" or "MM" and the
/// version of TIFF or BigTIFF. Needs four bytes, or all bytes of a shorter file.
[[nodiscard]] bool isImageStart(std::string_view firstBytes);

/// The same for an open file, whose position does not change. True also when it cannot be read: its
/// record then reports the error.
[[nodiscard]] bool mayBeImage(int descriptor);

}  // namespace veltrace::cli
