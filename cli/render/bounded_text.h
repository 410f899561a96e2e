// Text of limited size.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "render/renderer.h"

namespace veltrace::cli {

/// The bytes that may still be written to all texts of one rendering.
class Allowance {
public:
    explicit Allowance(std::size_t bytes) : left_(bytes) {}

    /// Throws OutputTooLarge.
    void take(std::size_t bytes) {
        if (bytes > left_) {
            throw OutputTooLarge();
        }
        left_ -= bytes;
    }

private:
    std::size_t left_;
};

/// A text that writers append to, as RapidJSON's Writer does. `allowance` outlives it.
class BoundedText {
public:
    using Ch = char;

    explicit BoundedText(Allowance& allowance) : allowance_(&allowance) {}

    void append(std::string_view piece) {
        allowance_->take(piece.size());
        text_.append(piece);
    }
    void append(char c) {
        allowance_->take(1);
        text_.push_back(c);
    }

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] std::string take() && { return std::move(text_); }

private:
    Allowance* allowance_;
    std::string text_;
};

}  // namespace veltrace::cli
