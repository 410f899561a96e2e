// The process that walks directories, so that a slow one never delays the run.
#pragma once

namespace veltrace::cli {

/// The only argument of a process that walks directories.
inline constexpr const char* kWalkMode = "--walk-names";

/// Exit status: everything was walked; directories were left out, with errors.
inline constexpr int kWalkedAll = 0;
inline constexpr int kWalkedPart = 1;

/// Walks each root that `rootsFd` lists, a NUL after each. Writes the names found to `outFd`, a NUL
/// after each, and errors to `errFd`, a line each. A name is delayed by at most about 50 ms.
/// Returns one of the above; the walk ends quietly when the reader of `outFd` goes away. Throws
/// std::system_error when a descriptor fails. Changes the process: it ends with its parent, ignores
/// SIGPIPE, and ignores SIGINT, which a terminal sends to both and the parent handles.
[[nodiscard]] int walkProcess(int rootsFd, int outFd, int errFd);

}  // namespace veltrace::cli
