#include "tagfile/swap_bytes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace veltrace::module {

namespace {

std::uint16_t reversed(std::uint16_t number) {
    return __builtin_bswap16(number);
}

std::uint32_t reversed(std::uint32_t number) {
    return __builtin_bswap32(number);
}

std::uint64_t reversed(std::uint64_t number) {
    return __builtin_bswap64(number);
}

template <class Number>
void reverseEach(std::byte* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, bytes += sizeof(Number)) {
        Number number;
        std::memcpy(&number, bytes, sizeof number);
        const Number swapped = reversed(number);
        std::memcpy(bytes, &swapped, sizeof swapped);
    }
}

void reverseEach(std::byte* bytes, int elementSize, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, bytes += elementSize) {
        std::reverse(bytes, bytes + elementSize);
    }
}

}  // namespace

// Sizes of numbers are compile-time constants, so that the compiler vectorizes their loops.
void swapBytes(void* buffer, int elementSize, unsigned count, bool swap) {
    if (!swap || count == 0) {
        return;
    }
    auto* const bytes = static_cast<std::byte*>(buffer);
    switch (elementSize) {
        case 1:
            return;
        case 2:
            return reverseEach<std::uint16_t>(bytes, count);
        case 4:
            return reverseEach<std::uint32_t>(bytes, count);
        case 8:
            return reverseEach<std::uint64_t>(bytes, count);
        default:
            return reverseEach(bytes, elementSize, count);
    }
}

}  // namespace veltrace::module
