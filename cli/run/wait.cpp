#include "run/wait.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace veltrace::cli {

void waitFor(std::vector<pollfd>& set, std::chrono::steady_clock::time_point until) {
    using Milliseconds = std::chrono::milliseconds;
    constexpr Milliseconds kLongest{60'000};
    const auto now = std::chrono::steady_clock::now();
    const auto time =
        std::clamp(until > now + kLongest ? kLongest : std::chrono::ceil<Milliseconds>(until - now),
                   Milliseconds{0}, kLongest);
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
