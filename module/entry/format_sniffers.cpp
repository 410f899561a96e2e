#include "entry/format_sniffers.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>

namespace veltrace::module {

namespace {

template <std::size_t Size>
using Signature = std::array<unsigned char, Size>;

constexpr Signature<2> kJpeg{0xFF, 0xD8};
constexpr Signature<4> kClassicTiffBig{'M', 'M', 0x00, 0x2A};
constexpr Signature<4> kClassicTiffLittle{'I', 'I', 0x2A, 0x00};
// Kept: the little-endian pattern with "MM" in front. A true big-endian BigTIFF file begins
// 'M', 'M', 0x00, 0x2B and is not recognised.
constexpr Signature<4> kBigTiffBig{'M', 'M', 0x2B, 0x00};
constexpr Signature<4> kBigTiffLittle{'I', 'I', 0x2B, 0x00};

template <std::size_t Size>
std::optional<Signature<Size>> leadingBytes(const char* fileName) {
    std::FILE* file = fopen64(fileName, "r");
    if (file == nullptr) {
        return std::nullopt;
    }
    Signature<Size> bytes{};
    const std::size_t bytesRead = std::fread(bytes.data(), 1, Size, file);
    static_cast<void>(std::fclose(file));
    if (bytesRead < Size) {
        return std::nullopt;
    }
    return bytes;
}

}  // namespace

bool isJpegFile(const char* fileName) {
    return leadingBytes<2>(fileName) == kJpeg;
}

bool isClassicTiffFile(const char* fileName) {
    const auto bytes = leadingBytes<4>(fileName);
    return bytes == kClassicTiffBig || bytes == kClassicTiffLittle;
}

bool isBigTiffFile(const char* fileName) {
    const auto bytes = leadingBytes<4>(fileName);
    return bytes == kBigTiffBig || bytes == kBigTiffLittle;
}

}  // namespace veltrace::module
