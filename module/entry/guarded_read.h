// Reads a file and reports its errors to the host.
#pragma once

namespace veltrace::module {

class TagFile;

/// Runs `reader->readAll()`, the one guarded step of a call. Returns when everything was read, or
/// when a recoverable error left at least one directory (the error is then a host warning).
/// Otherwise raises a host error. If the module itself threw, deletes the reader and frees
/// `fileName` first; any other exception leaves both behind.
void readAllGuarded(TagFile* reader, char* fileName);

}  // namespace veltrace::module
