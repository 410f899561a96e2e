// How a pipe hands over what was written to it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "parameters.h"

namespace veltrace::fuzz {

/// Takes pieces from the front of bytes. Their sizes repeat; without any all bytes are one piece.
class Pieces {
public:
    Pieces() = default;
    explicit Pieces(Parameters& parameters)
        : sizes_(parameters.text(8)), isLarge_(parameters.flag()) {}

    /// At least `least` bytes, which are not 0, if there are as many.
    std::string_view takeFrom(std::string_view& bytes, std::size_t least = 1) {
        const std::string_view piece = bytes.substr(0, std::max(nextSize(), least));
        bytes.remove_prefix(piece.size());
        return piece;
    }

private:
    std::size_t nextSize() {
        if (sizes_.empty()) {
            return std::string_view::npos;
        }
        const auto size = static_cast<unsigned char>(sizes_[next_]);
        next_ = (next_ + 1) % sizes_.size();
        return isLarge_ ? std::size_t{size} * 257 + 1 : std::size_t{size} % 16 + 1;
    }

    std::string sizes_;
    bool isLarge_ = false;
    std::size_t next_ = 0;
};

}  // namespace veltrace::fuzz
