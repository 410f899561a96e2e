#include "module_path.h"

namespace veltrace::cli {

std::filesystem::path defaultModulePath() {
    return std::filesystem::read_symlink("/proc/self/exe").replace_filename("veltrace.so");
}

}  // namespace veltrace::cli
