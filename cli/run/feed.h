// The inputs of a run, one by one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "run/reading.h"

namespace veltrace::cli {

/// Takes names from the inputs until they end.
class Feed {
public:
    explicit Feed(Inputs& inputs) : inputs_(inputs) {}

    struct File {
        std::uint64_t id = 0;
        std::string path;
    };

    /// The next file, if its name is available now.
    [[nodiscard]] std::optional<File> next();

    /// Whether `next` will return no more files.
    [[nodiscard]] bool isAtEnd() const { return isAtEnd_; }
    /// The descriptor to wait for when `next` returned nothing; -1 for none.
    [[nodiscard]] int descriptor() const { return isLate_ ? inputs_.descriptor() : -1; }
    /// What is wrong with the inputs; empty: nothing.
    [[nodiscard]] const std::string& error() const { return error_; }
    /// The number of files once all names are known.
    [[nodiscard]] std::optional<std::uint64_t> total() const;

private:
    Inputs& inputs_;
    std::string error_;
    bool isAtEnd_ = false;
    bool isLate_ = false;
};

}  // namespace veltrace::cli
