// Messages on standard error.
#pragma once

#include <ostream>
#include <string_view>

#include "record/outcome.h"

namespace veltrace::cli {

/// Writes "veltrace: <text>", with `text` made visible, as one line.
void writeMessage(std::ostream& err, std::string_view text);

/// The same for a text that is already visible.
void writeVisibleMessage(std::ostream& err, std::string_view text);

/// Writes the warnings and the error of the file `path`, one line each:
/// "veltrace: FILE: warning: <text> [<identifier>]".
void writeMessages(std::ostream& err, std::string_view path, const Outcome& outcome);

}  // namespace veltrace::cli
