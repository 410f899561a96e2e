// Exit statuses of the command.
#pragma once

namespace veltrace::cli {

/// A later one takes precedence over an earlier one. An interrupted run ends with 128 + the signal,
/// and one whose output nobody reads any more with 128 + SIGPIPE.
enum ExitStatus : int {
    kAllRead = 0,        ///< every file was read, perhaps with warnings
    kSomeFailed = 1,     ///< at least one file could not be read
    kWrongUsage = 2,     ///< the arguments are wrong, or the module cannot be loaded
    kOutputFailed = 3,   ///< the output could not be created or written
    kInternalFault = 4,  ///< the processes that read files cannot be started
    kSignalled = 128,
};

}  // namespace veltrace::cli
