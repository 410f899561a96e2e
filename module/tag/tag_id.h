// Names for the tag ids that the code itself mentions.
#pragma once

#include <cstdint>

namespace veltrace::module::tag_id {

constexpr std::uint16_t kNewSubFileType = 254;
constexpr std::uint16_t kWidth = 256;
constexpr std::uint16_t kHeight = 257;
constexpr std::uint16_t kBitsPerSample = 258;
constexpr std::uint16_t kCompression = 259;
constexpr std::uint16_t kPhotometricInterpretation = 262;
constexpr std::uint16_t kThresholding = 263;
constexpr std::uint16_t kFillOrder = 266;
constexpr std::uint16_t kImageDescription = 270;
constexpr std::uint16_t kStripOffsets = 273;
constexpr std::uint16_t kOrientation = 274;
constexpr std::uint16_t kSamplesPerPixel = 277;
constexpr std::uint16_t kRowsPerStrip = 278;
constexpr std::uint16_t kStripByteCounts = 279;
constexpr std::uint16_t kMinSampleValue = 280;
constexpr std::uint16_t kMaxSampleValue = 281;
constexpr std::uint16_t kXResolution = 282;
constexpr std::uint16_t kYResolution = 283;
constexpr std::uint16_t kPlanarConfiguration = 284;
constexpr std::uint16_t kGrayResponseUnit = 290;
constexpr std::uint16_t kResolutionUnit = 296;
constexpr std::uint16_t kPredictor = 317;
constexpr std::uint16_t kColormap = 320;
constexpr std::uint16_t kTileWidth = 322;
constexpr std::uint16_t kTileLength = 323;
constexpr std::uint16_t kTileOffsets = 324;
constexpr std::uint16_t kTileByteCounts = 325;
constexpr std::uint16_t kSubIfds = 330;
constexpr std::uint16_t kInkSet = 332;
constexpr std::uint16_t kSampleFormat = 339;
constexpr std::uint16_t kJpegProc = 512;
constexpr std::uint16_t kYCbCrPositioning = 531;
constexpr std::uint16_t kXmp = 700;
constexpr std::uint16_t kExifIfd = 34665;
constexpr std::uint16_t kIccProfile = 34675;
constexpr std::uint16_t kGpsIfd = 34853;
constexpr std::uint16_t kInteroperabilityIfd = 40965;

}  // namespace veltrace::module::tag_id
