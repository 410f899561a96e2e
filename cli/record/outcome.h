// The outcome of reading one file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zephra/host/call_result.h"

#include "render/rendering.h"

namespace veltrace::cli {

enum class Status : std::uint8_t {
    ok,
    warned,
    error,        ///< the module reported an error
    limitMemory,  ///< the memory limit of a file was reached
    limitTime,
    crashed,     ///< the process that read the file died, twice
    unreadable,  ///< not a regular file, or one that the user may not read
};

inline constexpr std::size_t kStatusCount = 7;

/// The name of a status in records: "ok", "limit-memory" and so on.
[[nodiscard]] std::string_view nameOf(Status status);

/// Whether a status means that the file was not read.
[[nodiscard]] inline bool isFailure(Status status) {
    return status != Status::ok && status != Status::warned;
}

/// Warnings that a record contains.
inline constexpr std::size_t kMaxWarnings = 1000;

struct Outcome {
    Status status = Status::ok;
    std::optional<zephra::Message> error;   ///< always set on failure
    std::vector<zephra::Message> warnings;  ///< the first `kMaxWarnings`
    std::uint64_t warningsDropped = 0;
    std::uint64_t elapsedMicroseconds = 0;
    Rendering rendering;  ///< empty on failure
};

/// An outcome that the command itself decides.
[[nodiscard]] Outcome failure(Status status, std::string identifier, std::string text);

}  // namespace veltrace::cli
