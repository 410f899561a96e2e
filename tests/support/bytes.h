// The bytes of a file under test.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace veltrace::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

inline Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

}  // namespace veltrace::test
