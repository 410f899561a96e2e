// Names for the tag ids that the code uses.
#pragma once

#include <cstdint>

namespace veltrace::module::tag_id {

constexpr std::uint16_t kWidth = 256;
constexpr std::uint16_t kHeight = 257;
constexpr std::uint16_t kBitsPerSample = 258;
constexpr std::uint16_t kPhotometricInterpretation = 262;
constexpr std::uint16_t kImageDescription = 270;
constexpr std::uint16_t kSamplesPerPixel = 277;
constexpr std::uint16_t kMaxSampleValue = 281;
constexpr std::uint16_t kGrayResponseUnit = 290;
constexpr std::uint16_t kColormap = 320;
constexpr std::uint16_t kSubIfds = 330;
constexpr std::uint16_t kSampleFormat = 339;
constexpr std::uint16_t kXmp = 700;
constexpr std::uint16_t kExifIfd = 34665;
constexpr std::uint16_t kIccProfile = 34675;
constexpr std::uint16_t kGpsIfd = 34853;
constexpr std::uint16_t kInteroperabilityIfd = 40965;

}  // namespace veltrace::module::tag_id
