// The arguments of the command.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "names/name_hash.h"
#include "render/render_options.h"

namespace veltrace::cli {

enum class FailOn : std::uint8_t { error, warning, never };
enum class When : std::uint8_t { automatic, always, never };

struct Options {
    // Input
    std::vector<std::string> files;  ///< any bytes
    bool isRecursive = false;
    std::vector<std::string> lists;     ///< files of names, one in a line
    std::vector<std::string> nulLists;  ///< files of names, a NUL after each
    std::optional<Shard> shard;
    std::string resumeFrom;  ///< empty: from the start

    // Output
    RenderOptions render;  ///< without the decision about colour
    std::string output;    ///< empty: standard output
    When ordered = When::automatic;
    When colour = When::automatic;
    When progress = When::automatic;
    std::string summary;  ///< a file; empty: none
    FailOn failOn = FailOn::error;

    // Reading
    std::filesystem::path module;  ///< empty: the one next to the executable
    std::size_t jobs = 1;
    bool isIsolated = true;
    bool isSandboxed = true;
    std::chrono::milliseconds timeLimit{10'000};
    std::uint64_t memoryLimit = std::uint64_t{1} << 30;
};

/// The answer to arguments that do not start a run.
struct Reply {
    std::string text;  ///< ends with a newline
    bool isError = false;
};

/// Parses the arguments of `main`. The reply is the help, the version, the schema or, with
/// `isError`, the error in them, with their bytes made visible.
[[nodiscard]] std::variant<Options, Reply> parseOptions(int argc, const char* const* argv);

}  // namespace veltrace::cli
