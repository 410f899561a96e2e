// What else the command can be: processes that it starts for itself.
#pragma once

namespace veltrace::cli {

/// The only argument of a process that reads files, see `runWorker`.
inline constexpr const char* kWorkerMode = "--worker";
/// The only argument of a process that walks directories, see `walkProcess`.
inline constexpr const char* kWalkMode = "--walk-names";

}  // namespace veltrace::cli
