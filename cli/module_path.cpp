#include "module_path.h"

#include <fmt/format.h>

#include "zephra/host/module.h"

namespace veltrace::cli {

std::filesystem::path defaultModulePath() {
    try {
        return std::filesystem::read_symlink("/proc/self/exe").replace_filename("veltrace.so");
    } catch (const std::filesystem::filesystem_error& error) {
        throw zephra::LoadError(fmt::format("cannot find the module: {}", error.what()));
    }
}

}  // namespace veltrace::cli
