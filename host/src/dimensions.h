// The dimensions of arrays.
#pragma once

#include <cstddef>
#include <span>

namespace zephra {

/// At least two.
using Dimensions = std::span<const std::size_t>;

inline constexpr std::size_t kMaxDimensions = 255;

/// Sets `product`; false when it overflows.
[[nodiscard]] inline bool multiply(Dimensions dimensions, std::size_t* product) {
    bool isEmpty = false;
    bool overflows = false;
    *product = 1;
    for (const std::size_t dimension : dimensions) {
        isEmpty = isEmpty || dimension == 0;
        overflows = __builtin_mul_overflow(*product, dimension, product) || overflows;
    }
    // A zero anywhere makes the array empty, however large the other dimensions are.
    return isEmpty || !overflows;
}

/// The product of dimensions that `multiply` accepted.
[[nodiscard]] inline std::size_t productOf(Dimensions dimensions) {
    std::size_t product = 0;
    static_cast<void>(multiply(dimensions, &product));
    return product;
}

}  // namespace zephra
