// Messages to the person at the terminal.
#pragma once

#include <ostream>
#include <string_view>

#include "zephra/host/call_result.h"

namespace veltrace::cli {

/// Writes "veltrace: <text>", with `text` made visible, as one line.
void writeMessage(std::ostream& err, std::string_view text);

/// Writes the warnings and the error of a call for the file `path`, one line each:
/// "veltrace: FILE: warning: <text> [<identifier>]".
void writeMessages(std::ostream& err, std::string_view path, const zephra::CallResult& result);

}  // namespace veltrace::cli
