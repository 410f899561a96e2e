// What the processes of one run say to each other.
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
    bool isConfined = true;         ///< whether files and system calls are
    std::int64_t parent = 0;        ///< the process without which this one has nothing to do
};

/// The sequence number of the first frame in either direction; its payload is the setup, and then
/// what keeps the worker from working, or nothing.
inline constexpr std::uint64_t kSetupSequence = std::numeric_limits<std::uint64_t>::max();

/// What a worker sends for a request, whose payload is a file name.
struct Answer {
    Outcome outcome;
    bool wantsReplacement = false;  ///< the worker should read no more files
};

/// Bytes that the messages of an answer may have. They name the file, whose name has at most 4096
/// bytes, and a record has six bytes for one of theirs at worst.
inline constexpr std::size_t kMostMessageBytes = std::size_t{8} << 20;

[[nodiscard]] std::size_t messageBytes(const Outcome& outcome);

/// Bytes of a payload with a rendering of `largestOutput` bytes and the longest messages.
[[nodiscard]] std::size_t largestAnswer(std::size_t largestOutput);

[[nodiscard]] std::string encoded(const WorkerSetup& setup);
/// Throws BadFrame for whatever `encoded` does not give.
[[nodiscard]] WorkerSetup decodedSetup(std::string_view payload);

/// Appends to `bytes`.
void encode(const Answer& answer, std::string& bytes);
/// Throws BadFrame for whatever `encode` does not write of an outcome that a worker may state.
[[nodiscard]] Answer decodedAnswer(std::string_view payload);

}  // namespace veltrace::cli
