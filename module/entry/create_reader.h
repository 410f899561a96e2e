// Chooses the reader of a file.
#pragma once

namespace veltrace::module {

class TagFile;

/// A new reader of the kind that the file's first bytes ask for; the caller owns it. Raises a host
/// error when the file cannot be opened or no reader knows its format. What the reader's
/// constructor throws passes.
[[nodiscard]] TagFile* createReader(const char* fileName);

}  // namespace veltrace::module
