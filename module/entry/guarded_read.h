// Reads a file and answers for what goes wrong.
#pragma once

namespace veltrace::module {

class TagFile;

/// Runs `reader->readAll()`, the one guarded step of a call. Returns when everything was read, or
/// when a recoverable error left at least one directory (the error is then a host warning).
/// Otherwise leaves by a host error: after deleting the reader and freeing `fileName` for the
/// module's own errors, leaving both behind for any other exception.
void readAllGuarded(TagFile* reader, char* fileName);

}  // namespace veltrace::module
