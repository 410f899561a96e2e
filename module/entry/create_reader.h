// Chooses the reader of a file.
#pragma once

namespace veltrace::module {

class TagFile;

/// Returns a new reader for the format that the file's first bytes show; the caller owns it. Raises
/// a host error if the file cannot be opened or its format is not recognized. Exceptions of the
/// reader's constructor pass through.
[[nodiscard]] TagFile* createReader(const char* fileName);

}  // namespace veltrace::module
