// The process that walks directories, so that a slow one never holds up the run.
#pragma once

namespace veltrace::cli {

/// Everything was walked; directories were left out, with complaints.
inline constexpr int kWalkedAll = 0;
inline constexpr int kWalkedPart = 1;

/// Walks each root that `rootsFd` gives, NUL behind each, and writes the names found to `outFd`,
/// NUL behind each, and complaints to `errFd`, a line each. A name waits about 50 ms at most.
/// Returns one of the above; a reader of `outFd` that goes away ends the walk quietly. Throws
/// std::system_error when a descriptor fails. Takes over the process: it ends with the one that
/// started it, ignores SIGPIPE, and ignores SIGINT, which a terminal sends to both and the other
/// one answers.
[[nodiscard]] int walkProcess(int rootsFd, int outFd, int errFd);

}  // namespace veltrace::cli
