// Workers that follow a script.
#pragma once

#include <string>

namespace veltrace::cli::test {

/// The processes that a pool of this program starts. Each reports that it is ready, and answers
/// requests with "ok" and "[]", except for the behaviour of its script. A request with the name
/// "plain" is always answered that way.
inline constexpr const char* kPlain = "plain";
/// Sends the beginning of another answer after its answer.
inline constexpr const char* kTalkative = "talkative";
/// Closes the pipe of its requests after an answer, and runs on.
inline constexpr const char* kDeaf = "deaf";
/// Is ready after 300 ms.
inline constexpr const char* kLate = "late";
/// Never answers.
inline constexpr const char* kSilent = "silent";
/// Warns with the numbers of its descriptors.
inline constexpr const char* kOpenHanded = "open-handed";

}  // namespace veltrace::cli::test
