// Detects the format of a file from its first bytes.
#pragma once

namespace veltrace::module {

// Each opens the file, reads its first bytes and closes it. A file that is too short or cannot be
// opened returns false.

/// FF D8, the start of a JPEG file. Two bytes are enough.
[[nodiscard]] bool isJpegFile(const char* fileName);

/// "MM" 00 2A or "II" 2A 00 (TIFF 6.0, section 2).
[[nodiscard]] bool isClassicTiffFile(const char* fileName);

/// "II" 2B 00, and the same with "MM" in place of "II".
[[nodiscard]] bool isBigTiffFile(const char* fileName);

}  // namespace veltrace::module
