// The two error classes of the module.
#pragma once

#include <string>
#include <utility>

namespace veltrace::module {

/// Ends the whole read: headers, byte order, opening and closing the file, the JPEG container, the
/// entry count of an image directory, an impossible IFD ID. Thrown while reading, it becomes a host
/// error; thrown by a reader's constructor or destructor, it reaches the host unchanged.
struct VeltraceFatalError {
    VeltraceFatalError(std::string id, std::string text)
        : identifier(std::move(id)), message(std::move(text)) {}
    VeltraceFatalError(const VeltraceFatalError& other) = default;
    VeltraceFatalError& operator=(const VeltraceFatalError& other) = delete;
    ~VeltraceFatalError() = default;

    std::string identifier;  ///< colon-separated, begins with "ZEPHRA:veltrace:"
    std::string message;
};

/// Ends the read of one directory or one entry. Becomes a host warning if there is still something
/// to report, and a host error otherwise.
struct VeltraceRecoverableError {
    VeltraceRecoverableError(std::string id, std::string text)
        : identifier(std::move(id)), message(std::move(text)) {}
    VeltraceRecoverableError(const VeltraceRecoverableError& other) = default;
    VeltraceRecoverableError& operator=(const VeltraceRecoverableError& other) = delete;
    ~VeltraceRecoverableError() = default;

    std::string identifier;
    std::string message;
};

}  // namespace veltrace::module
