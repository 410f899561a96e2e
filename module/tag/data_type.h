// The data types of TIFF 6.0 (section 2) and the size of one element of each.
#pragma once

#include <array>
#include <cstdint>

namespace veltrace::module {

/// The type code of a directory entry. Codes from 14 up are invalid, those of BigTIFF included.
enum class DataType : std::uint16_t {
    noType = 0,
    byte = 1,
    ascii = 2,
    unsignedShort = 3,
    unsignedLong = 4,
    rational = 5,
    signedByte = 6,
    undefined = 7,
    signedShort = 8,
    signedLong = 9,
    signedRational = 10,
    singleFloat = 11,
    doubleFloat = 12,
    ifd = 13,
};

/// Bytes of one element, by type code.
constexpr std::array<std::uint8_t, 14> kElementSizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};

constexpr bool isRational(DataType type) {
    return type == DataType::rational || type == DataType::signedRational;
}

}  // namespace veltrace::module
