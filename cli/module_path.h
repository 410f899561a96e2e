// Where the command finds its module.
#pragma once

#include <filesystem>

namespace veltrace::cli {

/// `veltrace.so` in the directory of the running executable. Throws
/// `zephra::LoadError` when the system does not tell where that is.
[[nodiscard]] std::filesystem::path defaultModulePath();

}  // namespace veltrace::cli
