// Workers that do what a test tells them.
#pragma once

#include <string>

namespace veltrace::cli::test {

/// What the processes do that a pool of this program starts. Each tells that it is ready, and
/// answers requests with "ok" and "[]" but for what its name says of it. The name of a request that
/// is "plain" is always answered so.
inline constexpr const char* kPlain = "plain";
/// Goes on, after an answer, with the beginning of one that it was not asked for.
inline constexpr const char* kTalkative = "talkative";
/// Closes the pipe of its requests after an answer, and lives on.
inline constexpr const char* kDeaf = "deaf";
/// Is ready after 300 ms.
inline constexpr const char* kLate = "late";
/// Never answers.
inline constexpr const char* kSilent = "silent";
/// Warns of the numbers of its descriptors.
inline constexpr const char* kOpenHanded = "open-handed";

}  // namespace veltrace::cli::test
