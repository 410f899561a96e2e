// The dimensions of an array to be made.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace zephra {

/// At least two dimensions and their product. Points at the dimensions it was made of when there
/// are more than two.
class Shape {
public:
    static constexpr std::size_t kMostDimensions = 255;

    /// The shape of `ndim` dimensions at `dims`: none makes 0 x 0, one makes n x 1. Nothing when
    /// their product overflows, when there are more than `kMostDimensions`, or when `dims` is
    /// missing.
    [[nodiscard]] static std::optional<Shape> of(std::size_t ndim, const std::size_t* dims);

    /// rows x columns, which must not overflow.
    Shape(std::size_t rows, std::size_t columns) : two_{rows, columns}, count_(rows * columns) {}

    [[nodiscard]] std::span<const std::size_t> dimensions() const {
        return many_.empty() ? std::span<const std::size_t>(two_) : many_;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    Shape(std::span<const std::size_t> many, std::size_t count) : many_(many), count_(count) {}

    std::array<std::size_t, 2> two_{};
    std::span<const std::size_t> many_;
    std::size_t count_;
};

}  // namespace zephra
