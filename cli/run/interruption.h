// Signals that end a run.
#pragma once

namespace veltrace::cli {

/// From now on SIGINT, SIGTERM and SIGHUP, unless the process ignores them, end the run instead of
/// the process; a second one of a kind ends the process. To be called once.
void catchInterruptions();

/// The signal that ends the run, or 0.
[[nodiscard]] int interruption();

/// Whether the state of a child process has changed since the last call.
[[nodiscard]] bool takeChildChange();

/// Readable after a signal that one of the two above reports, until `forgetWakeUp`.
[[nodiscard]] int wakeUpDescriptor();
void forgetWakeUp();

}  // namespace veltrace::cli
