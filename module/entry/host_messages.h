// The two ways in which the module speaks to its host.
#pragma once

#include <cstdlib>
#include <string>

#include "zephra/qvx.h"

namespace veltrace::module {

/// Raises a host error. The host's exception passes through the caller, which therefore must not
/// be noexcept. The text itself is the format, so a host may read a '%' in it.
[[noreturn]] void raiseHostError(const char* identifier, const std::string& text);

/// Raises a host error whose format is a literal, with the arguments that it names. Needs no memory
/// of the module.
template <class... Arguments>
[[noreturn]] void raiseFormattedHostError(const char* identifier, const char* format,
                                          Arguments... arguments) {
    qvxErrMsgIdAndTxt(identifier, format, arguments...);
    std::abort();  // the host never returns here
}

/// Issues a host warning; the text itself is the format.
void issueHostWarning(const char* identifier, const std::string& text);

}  // namespace veltrace::module
