#include "shape.h"

#include <algorithm>

namespace zephra {

std::optional<std::size_t> Shape::checkedProductOf(std::span<const std::size_t> dimensions) {
    // A zero anywhere makes the array empty, however large the other dimensions are.
    if (std::ranges::find(dimensions, std::size_t{0}) != dimensions.end()) {
        return 0;
    }
    std::size_t product = 1;
    for (const std::size_t dimension : dimensions) {
        if (__builtin_mul_overflow(product, dimension, &product)) {
            return std::nullopt;
        }
    }
    return product;
}

std::optional<Shape> Shape::ofAny(std::size_t ndim, const std::size_t* dims) {
    if (ndim == 0) {
        return Shape(0, 0);
    }
    if (dims == nullptr || ndim > kMostDimensions) {
        return std::nullopt;
    }
    if (ndim == 1) {
        return Shape(dims[0], 1);
    }
    const std::span<const std::size_t> many(dims, ndim);
    const std::optional<std::size_t> count = checkedProductOf(many);
    return count ? std::optional(Shape(many, *count)) : std::nullopt;
}

}  // namespace zephra
