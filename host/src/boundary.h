// The line between host and module that exceptions cross.
#pragma once

#include <functional>
#include <optional>

#include "zephra/host/call_result.h"

namespace zephra {

/// Leaves the module by the exception that only `runModule` knows.
[[noreturn]] void raise(Message message);

/// Runs `module` and returns the error that ended it: the one that was raised, or the description
/// of a foreign exception. Only the unwinding of a thread that exits passes through.
[[nodiscard]] std::optional<Message> runModule(const std::function<void()>& module);

}  // namespace zephra
