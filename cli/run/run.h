// One run of the command.
#pragma once

#include <string_view>

#include "options.h"

namespace veltrace::cli {

/// Reads all files of `options` and writes their records; messages go to standard error. Returns
/// the exit status.
[[nodiscard]] int run(const Options& options);

/// Prints `text` to standard output; failures are handled as in `run`.
[[nodiscard]] int print(std::string_view text);

}  // namespace veltrace::cli
