// Runs code that changes a process permanently in a child process.
#pragma once

#include <functional>
#include <string>

namespace veltrace::test {

/// The result of `body` in a child process; "signal N" or "threw: TEXT" if it ends otherwise.
[[nodiscard]] std::string inChild(const std::function<std::string()>& body);

/// "ok" for a non-negative result of a system call, else the name of errno, such as "EPERM".
[[nodiscard]] std::string outcomeOf(long result);

}  // namespace veltrace::test
