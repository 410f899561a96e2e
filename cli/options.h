// The arguments of the command.
#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace veltrace::cli {

struct Options {
    bool json = false;
    std::filesystem::path module;    ///< empty: the one next to the executable
    std::vector<std::string> files;  ///< at least one; any bytes
};

/// A text that answers the arguments in place of a run.
struct Reply {
    std::string text;  ///< ends with a newline
    bool isError = false;
};

/// Reads the arguments of `main`. The reply is the help, the version or, with `isError`, what is
/// wrong with them; bytes of the arguments are made visible in it.
[[nodiscard]] std::variant<Options, Reply> parseOptions(int argc, const char* const* argv);

}  // namespace veltrace::cli
