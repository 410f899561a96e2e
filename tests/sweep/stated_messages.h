// The messages that the content of a file can bring about.
#pragma once

#include <string>

#include "zephra/host/call_result.h"

namespace veltrace::test {

enum class Channel { warning, error };

/// Whether a message with this identifier may come on this channel, and its text has the shape
/// that is stated for the identifier.
[[nodiscard]] bool isStated(const zephra::Message& message, Channel channel);

}  // namespace veltrace::test
