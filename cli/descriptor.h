// File descriptors: who closes them, pipes between processes, and waiting for them.
#pragma once

#include <chrono>
#include <poll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace veltrace::cli {

/// Owns a file descriptor, or none (-1), and closes it.
class Descriptor {
public:
    explicit Descriptor(int descriptor = -1) noexcept : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (isOpen()) {
            close(descriptor_);
        }
    }

    [[nodiscard]] int get() const { return descriptor_; }
    [[nodiscard]] bool isOpen() const { return descriptor_ != -1; }
    /// Passes it to the caller, who closes it.
    [[nodiscard]] int release() noexcept { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// Both ends are closed by exec. Throws std::system_error.
[[nodiscard]] Pipe makePipe();

/// Reads and writes never wait from now on. Throws std::system_error.
void makeNonBlocking(const Descriptor& descriptor);

/// Waits until one of `set` is ready, the time has come, or a signal arrives. Entries of descriptor
/// -1 are never ready. Throws std::system_error.
void waitFor(std::vector<pollfd>& set, std::chrono::steady_clock::time_point until);

}  // namespace veltrace::cli
