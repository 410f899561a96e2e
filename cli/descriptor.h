// Who closes a file descriptor.
#pragma once

#include <unistd.h>
#include <utility>

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
    /// Gives it to the caller, who closes it.
    [[nodiscard]] int release() noexcept { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

}  // namespace veltrace::cli
