// The inputs of a reading, taken one by one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "run/reading.h"

namespace veltrace::cli {

/// Asks for names until there are no more.
class Feed {
public:
    explicit Feed(Inputs& inputs) : inputs_(inputs) {}

    struct File {
        std::uint64_t sequence = 0;
        std::string path;
    };

    /// The next file, if one is there now.
    [[nodiscard]] std::optional<File> next();

    /// Whether `next` will give no more.
    [[nodiscard]] bool isAtEnd() const { return isAtEnd_; }
    /// What to wait for when `next` gave nothing; -1 for nothing.
    [[nodiscard]] int descriptor() const { return isLate_ ? inputs_.descriptor() : -1; }
    [[nodiscard]] const Ending& ending() const { return ending_; }
    /// The number of files once all names have come.
    [[nodiscard]] std::optional<std::uint64_t> total() const;

private:
    Inputs& inputs_;
    Ending ending_;
    bool isAtEnd_ = false;
    bool isLate_ = false;
};

}  // namespace veltrace::cli
