// Runs what changes a process for good in a process of its own.
#pragma once

#include <functional>
#include <string>

namespace veltrace::test {

/// What `body` gives in a child of this process; of a child that ends otherwise "signal N", or
/// "threw: TEXT".
[[nodiscard]] std::string inChild(const std::function<std::string()>& body);

/// "ok" for a result of a system call that is not negative, else the name of errno, as "EPERM".
[[nodiscard]] std::string outcomeOf(long result);

}  // namespace veltrace::test
