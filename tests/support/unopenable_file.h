// A file that has a name and a status and cannot be opened.
#pragma once

#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace veltrace::test {

/// A socket under its name in the file system, which no function can open, whoever asks.
class UnopenableFile {
public:
    UnopenableFile() : descriptor_(socket(AF_UNIX, SOCK_STREAM, 0)) {}
    UnopenableFile(const UnopenableFile&) = delete;
    UnopenableFile& operator=(const UnopenableFile&) = delete;
    ~UnopenableFile() { close(descriptor_); }

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] std::string name() const {
        return "/proc/self/fd/" + std::to_string(descriptor_);
    }

private:
    int descriptor_;
};

}  // namespace veltrace::test
