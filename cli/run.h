// One run of the command.
#pragma once

#include <ostream>

#include "exit_status.h"
#include "options.h"

namespace veltrace::cli {

/// Loads the module, reads every file of `options` in order, and prints results to `out`, flushed
/// after each file, and messages to `err`. Stops at the first file whose result cannot be written.
[[nodiscard]] ExitStatus run(const Options& options, std::ostream& out, std::ostream& err);

/// Prints `text` to `out`; what `run` does with the same failure happens to it too.
[[nodiscard]] ExitStatus print(std::string_view text, std::ostream& out, std::ostream& err);

}  // namespace veltrace::cli
