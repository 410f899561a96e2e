// How a fuzz target tells what it found.
#pragma once

#include <string>

namespace veltrace::fuzz {

/// Ends the process with this sentence on stderr.
[[noreturn]] void reportFinding(const std::string& sentence);

}  // namespace veltrace::fuzz
