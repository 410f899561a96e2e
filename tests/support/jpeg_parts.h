// Pieces of JPEG files.
#pragma once

#include "support/bytes.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

inline const Bytes kStartOfImage{0xFF, 0xD8};

/// Of a TIFF structure in a first segment: start of image, marker, length and identifier.
constexpr std::size_t kHeaderPosition = 2 + 2 + 2 + 6;

/// A marker segment that states the length it has.
inline Bytes segment(std::uint8_t code, const Bytes& payload) {
    Bytes bytes{0xFF, code};
    append(bytes, Order::big, static_cast<std::uint16_t>(payload.size() + 2));
    return bytes + payload;
}

/// An APP1 segment with this identifier in front of `tiff`.
inline Bytes app1(const Bytes& identifier, const Bytes& tiff) {
    return segment(0xE1, identifier + tiff);
}

inline const Bytes kExif{'E', 'x', 'i', 'f', 0, 0};

/// A TIFF structure with Orientation (274).
inline Bytes rotatedTiff(std::uint16_t orientation, Order order = Order::little) {
    TiffBuilder file(order);
    file.image().shorts(274, {orientation});
    return file.bytes();
}

}  // namespace veltrace::test
