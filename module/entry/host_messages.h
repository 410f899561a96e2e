// Host errors and host warnings.
#pragma once

#include <cstdlib>
#include <string>

#include "zephra/qvx.h"

namespace veltrace::module {

/// Raises a host error. The host's exception unwinds through the caller, which must not be
/// noexcept. The text is the format itself, so a host may interpret a '%' in it.
[[noreturn]] void raiseHostError(const char* identifier, const std::string& text);

/// Raises a host error from a literal format and its arguments. Allocates no memory.
template <class... Arguments>
[[noreturn]] void raiseFormattedHostError(const char* identifier, const char* format,
                                          Arguments... arguments) {
    qvxErrMsgIdAndTxt(identifier, format, arguments...);
    std::abort();  // the host never returns here
}

/// Issues a host warning; the text is the format itself.
void issueHostWarning(const char* identifier, const std::string& text);

}  // namespace veltrace::module
