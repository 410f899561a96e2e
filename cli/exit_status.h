// How the command ends.
#pragma once

namespace veltrace::cli {

/// A later one outweighs an earlier one.
enum ExitStatus : int {
    kAllRead = 0,       ///< every file was read, perhaps with warnings
    kSomeFailed = 1,    ///< at least one file could not be read
    kWrongUsage = 2,    ///< the arguments make no sense, or the module cannot be loaded
    kOutputFailed = 3,  ///< the output is incomplete: it could not be made or written
};

}  // namespace veltrace::cli
