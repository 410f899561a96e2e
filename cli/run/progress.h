// The progress of a run, for a person at a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "run/tally.h"

namespace veltrace::cli {

/// One line on standard error, written over and over: files done, rate, failures, and the time left
/// when the number of files is known. Appears when a run lasts longer than a second.
class Progress {
public:
    using Clock = std::chrono::steady_clock;

    explicit Progress(bool isWanted) : isWanted_(isWanted), start_(Clock::now()) {}

    [[nodiscard]] Clock::duration elapsed() const { return Clock::now() - start_; }
    /// When `show` has something new to show.
    [[nodiscard]] Clock::time_point nextUpdate() const;

    /// `total`: number of files, once known.
    void show(const Tally& tally, std::optional<std::uint64_t> total);
    /// Clears the line, so that another one can be written.
    void clear();
    /// Writes the final line if progress was shown before.
    void finish(const Tally& tally);

private:
    bool isWanted_;
    bool isShown_ = false;
    bool hasShown_ = false;
    Clock::time_point start_;
    Clock::time_point next_ = start_ + std::chrono::seconds(1);
};

}  // namespace veltrace::cli
