#include "dimensions.h"

#include <algorithm>

namespace zephra {

bool multiply(Dimensions dimensions, std::size_t* product) {
    if (dimensions.size() == 2) {
        return !__builtin_mul_overflow(dimensions[0], dimensions[1], product);
    }
    // A zero anywhere makes the array empty, however large the other dimensions are.
    if (std::ranges::find(dimensions, std::size_t{0}) != dimensions.end()) {
        *product = 0;
        return true;
    }
    *product = 1;
    return std::ranges::none_of(dimensions, [product](std::size_t dimension) {
        return __builtin_mul_overflow(*product, dimension, product);
    });
}

std::size_t productOfMany(Dimensions dimensions) {
    std::size_t product = 0;
    static_cast<void>(multiply(dimensions, &product));
    return product;
}

}  // namespace zephra
