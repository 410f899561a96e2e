// How the command ends.
#pragma once

namespace veltrace::cli {

/// A later one outweighs an earlier one. An interrupted run ends with 128 + the signal, and one
/// whose output nobody reads any more as if by SIGPIPE.
enum ExitStatus : int {
    kAllRead = 0,        ///< every file was read, perhaps with warnings
    kSomeFailed = 1,     ///< at least one file could not be read
    kWrongUsage = 2,     ///< the arguments make no sense, or the module cannot be loaded
    kOutputFailed = 3,   ///< the output is incomplete: it could not be made or written
    kInternalFault = 4,  ///< the processes that read files cannot be had
    kSignalled = 128,
};

}  // namespace veltrace::cli
