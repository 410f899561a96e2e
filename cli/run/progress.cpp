#include "run/progress.h"

#include <fmt/format.h>
#include <iostream>
#include <string>

namespace veltrace::cli {
namespace {

constexpr std::chrono::milliseconds kInterval{200};
/// Back to the start of the line, and nothing after it.
constexpr const char* kRewind = "\r\x1b[K";

std::string timeText(std::chrono::duration<double> time) {
    const auto seconds = static_cast<std::uint64_t>(time.count());
    return seconds < 3600
               ? fmt::format("{}:{:02}", seconds / 60, seconds % 60)
               : fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace

Progress::Clock::time_point Progress::nextUpdate() const {
    return isWanted_ ? next_ : Clock::time_point::max();
}

void Progress::show(const Tally& tally, std::optional<std::uint64_t> total) {
    const auto now = Clock::now();
    if (now < nextUpdate()) {
        return;
    }
    const std::chrono::duration<double> time = now - start_;
    const double rate = static_cast<double>(tally.files()) / time.count();
    std::string line = fmt::format("{} done", tally.files());
    if (total) {
        line = fmt::format("{} of {} done", tally.files(), *total);
    }
    line += fmt::format(", {:.0f}/s, {} failed", rate, tally.failed());
    if (total && rate > 0) {
        const auto left = static_cast<double>(*total - tally.files());
        line += fmt::format(", {} left", timeText(std::chrono::duration<double>(left / rate)));
    }
    std::cerr << kRewind << "veltrace: " << line << std::flush;
    isShown_ = true;
    hasShown_ = true;
    next_ = now + kInterval;
}

void Progress::clear() {
    if (isShown_) {
        std::cerr << kRewind << std::flush;
        isShown_ = false;
    }
}

void Progress::finish(const Tally& tally) {
    clear();
    if (hasShown_) {
        std::cerr << "veltrace: " << tally.line(elapsed()) << std::endl;
    }
}

}  // namespace veltrace::cli
