#include "forced_format.h"

#include <algorithm>
#include <array>

namespace veltrace::fuzz {

namespace {

using test::Bytes;
using Signature = std::array<std::uint8_t, 4>;

constexpr Signature kClassicLittle{'I', 'I', 42, 0};
constexpr Signature kClassicBig{'M', 'M', 0, 42};
constexpr Signature kBigLittle{'I', 'I', 43, 0};
constexpr Signature kBigBig{'M', 'M', 43, 0};  // the order in which the module knows it

bool staysAsItIs(const Bytes& bytes, std::size_t signatureSize) {
    return bytes.size() < signatureSize || bytes[0] % 16 == 0;
}

Bytes asTiff(Bytes bytes, const Signature& little, const Signature& big) {
    if (!staysAsItIs(bytes, little.size())) {
        const bool isBig = bytes[0] == 'M' || bytes[1] == 'M';
        std::ranges::copy(isBig ? big : little, bytes.begin());
    }
    return bytes;
}

}  // namespace

Bytes asClassicTiff(const std::uint8_t* data, std::size_t size) {
    return asTiff(Bytes(data, data + size), kClassicLittle, kClassicBig);
}

Bytes asBigTiff(const std::uint8_t* data, std::size_t size) {
    return asTiff(Bytes(data, data + size), kBigLittle, kBigBig);
}

Bytes asJpeg(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, data + size);
    if (!staysAsItIs(bytes, 2)) {
        bytes[0] = 0xFF;
        bytes[1] = 0xD8;
    }
    return bytes;
}

}  // namespace veltrace::fuzz
