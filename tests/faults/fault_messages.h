// The messages that a refused request can bring about and no file can.
#pragma once

#include "zephra/host/call_result.h"

#include "sweep/stated_messages.h"

namespace veltrace::test {

/// As `isStated`, of messages about wrong arguments, names that do not open, exhausted memory,
/// refused arrays, positions that the system does not report, and what cannot be read although the
/// file has it.
[[nodiscard]] bool isStatedOfFaults(const zephra::Message& message, Channel channel);

/// Whether this is the host's own message: of exhausted memory in its own part of the call, and of
/// an exception of the module that leaves the call.
[[nodiscard]] bool isOfTheHost(const zephra::Message& message);

/// What the host reports of the module's own exception, and of exhausted memory, that leaves a
/// call.
[[nodiscard]] const zephra::Message& fatalErrorUnconverted();
[[nodiscard]] const zephra::Message& badAllocUnconverted();

}  // namespace veltrace::test
