// Messages between the processes of one run.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "record/outcome.h"
#include "render/render_options.h"

namespace veltrace::cli {

/// The first frame that a worker receives.
struct WorkerSetup {
    RenderOptions render;
    std::string module;             ///< path
    std::uint64_t memoryLimit = 0;  ///< bytes that reading a file may take; 0: no limit
    bool isSandboxed = true;        ///< whether files and system calls are restricted
    std::int64_t parent = 0;        ///< the process that started this one
};

/// The id of the first frame in either direction. Its payload is the setup; then, from the worker,
/// the error that keeps it from starting, or nothing.
inline constexpr std::uint64_t kSetupId = std::numeric_limits<std::uint64_t>::max();

/// The answer of a worker to a request, whose payload is a file name.
struct Answer {
    Outcome outcome;
    bool wantsReplacement = false;  ///< the worker should read no more files
};

/// Bytes that the messages of an answer may have. They contain the name of the file, at most 4096
/// bytes, and a record needs at most six bytes for one of theirs.
inline constexpr std::size_t kMaxMessageBytes = std::size_t{8} << 20;

[[nodiscard]] std::size_t messageBytes(const Outcome& outcome);

/// Bytes of a payload with the longest messages and a rendering of `maxOutput` bytes and at most
/// `maxFields` fields.
[[nodiscard]] std::size_t maxAnswer(std::size_t maxOutput, std::size_t maxFields);

[[nodiscard]] std::string encoded(const WorkerSetup& setup);
/// Throws BadFrame for bytes that `encoded` does not return.
[[nodiscard]] WorkerSetup decodedSetup(std::string_view payload);

/// Appends to `bytes`.
void encode(const Answer& answer, std::string& bytes);
/// Throws BadFrame for bytes that `encode` does not write for an outcome that a worker may report,
/// with at most `maxFields` fields.
[[nodiscard]] Answer decodedAnswer(std::string_view payload, std::size_t maxFields);

}  // namespace veltrace::cli
