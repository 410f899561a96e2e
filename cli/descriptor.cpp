#include "descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>

namespace veltrace::cli {

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void makeNonBlocking(const Descriptor& descriptor) {
    const int flags = fcntl(descriptor.get(), F_GETFL);
    if (flags < 0 || fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot set up a pipe");
    }
}

void waitFor(std::vector<pollfd>& set, std::chrono::steady_clock::time_point until) {
    using Milliseconds = std::chrono::milliseconds;
    constexpr Milliseconds kMaxWait{60'000};
    const auto now = std::chrono::steady_clock::now();
    const auto time =
        std::clamp(until > now + kMaxWait ? kMaxWait : std::chrono::ceil<Milliseconds>(until - now),
                   Milliseconds{0}, kMaxWait);
    if (poll(set.data(), set.size(), static_cast<int>(time.count())) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "cannot wait for processes");
        }
        for (pollfd& entry : set) {
            entry.revents = 0;
        }
    }
}

}  // namespace veltrace::cli
