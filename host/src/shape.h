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
    [[nodiscard]] static std::optional<Shape> of(std::size_t ndim, const std::size_t* dims) {
        std::size_t count = 0;
        if (ndim == 2 && dims != nullptr && !__builtin_mul_overflow(dims[0], dims[1], &count)) {
            return Shape(dims[0], dims[1]);
        }
        return ofAny(ndim, dims);
    }

    /// rows x columns, which must not overflow.
    Shape(std::size_t rows, std::size_t columns) : two_{rows, columns}, count_(rows * columns) {}

    [[nodiscard]] std::span<const std::size_t> dimensions() const {
        return many_.empty() ? std::span<const std::size_t>(two_) : many_;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

    /// The product of the dimensions of an array that exists, so that it does not overflow.
    [[nodiscard]] static std::size_t productOf(std::span<const std::size_t> dimensions) {
        return dimensions.size() == 2 ? dimensions[0] * dimensions[1]
                                      : checkedProductOf(dimensions).value_or(0);
    }

private:
    [[nodiscard]] static std::optional<Shape> ofAny(std::size_t ndim, const std::size_t* dims);
    [[nodiscard]] static std::optional<std::size_t> checkedProductOf(
        std::span<const std::size_t> dimensions);
    Shape(std::span<const std::size_t> many, std::size_t count) : many_(many), count_(count) {}

    std::array<std::size_t, 2> two_{};
    std::span<const std::size_t> many_;
    std::size_t count_;
};

}  // namespace zephra
