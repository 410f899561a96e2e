// The two error classes of the module.
#pragma once

#include <string>

namespace veltrace::module {

/// Ends the whole read: headers, byte order, opening and closing the file, the JPEG container, the
/// entry count of an image directory, an impossible IFD ID. Thrown while reading, it becomes a host
/// error; thrown by a reader's constructor or destructor, it reaches the host as it is.
struct VeltraceFatalError {
    std::string identifier;  ///< colon-separated, begins with "ZEPHRA:veltrace:"
    std::string message;
};

/// Ends the read of one directory or one entry. It costs a warning where something was read
/// without it, and is a host error otherwise.
struct VeltraceRecoverableError {
    std::string identifier;
    std::string message;
};

}  // namespace veltrace::module
