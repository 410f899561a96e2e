// The process that reads files for the parent.
#pragma once

namespace veltrace::cli {

/// The only argument of a process that reads files.
inline constexpr const char* kWorkerMode = "--worker";

/// The descriptors that a worker starts with.
inline constexpr int kRequests = 0;
inline constexpr int kAnswers = 3;

/// Takes its setup and requests from `kRequests`, answers each in turn on `kAnswers`, and returns
/// the exit status of the process when the requests end. Single-threaded; writes nowhere else.
[[nodiscard]] int runWorker();

}  // namespace veltrace::cli
