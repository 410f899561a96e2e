// The dimensions of arrays.
#pragma once

#include <cstddef>
#include <span>

namespace zephra {

/// At least two.
using Dimensions = std::span<const std::size_t>;

inline constexpr std::size_t kMostDimensions = 255;

/// Sets `product`; false when it overflows.
[[nodiscard]] bool multiply(Dimensions dimensions, std::size_t* product);

/// The product when it is known not to overflow.
[[nodiscard]] std::size_t productOfMany(Dimensions dimensions);

/// The same; nearly all arrays have two dimensions.
[[nodiscard]] inline std::size_t productOf(Dimensions dimensions) {
    const std::size_t* const first = dimensions.data();
    return dimensions.size() == 2 ? first[0] * first[1] : productOfMany(dimensions);
}

}  // namespace zephra
