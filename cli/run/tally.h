// Counts of a run.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "record/outcome.h"

namespace veltrace::cli {

/// Counts outcomes by status.
class Tally {
public:
    void add(Status status) { ++counts_.at(static_cast<std::size_t>(status)); }

    [[nodiscard]] std::uint64_t of(Status status) const {
        return counts_.at(static_cast<std::size_t>(status));
    }
    [[nodiscard]] std::uint64_t files() const;
    [[nodiscard]] std::uint64_t failed() const;

    /// "12 files: 9 ok, 2 warned, 1 error; 34.5 files/s"; failures that did not occur are left
    /// out.
    [[nodiscard]] std::string line(std::chrono::duration<double> time) const;
    /// A JSON object: "files", a number for each status, "seconds", "files_per_second"; ends with a
    /// newline.
    [[nodiscard]] std::string json(std::chrono::duration<double> time) const;

private:
    std::array<std::uint64_t, kStatusCount> counts_{};
};

}  // namespace veltrace::cli
