#include "render/units.h"

#include <algorithm>

namespace veltrace::cli {
namespace {

// TIFF 6.0, section 8 (ResolutionUnit by its word); Exif 2.3, section 4.6.5 (by its number).
constexpr UnitWord kPerLength[] = {
    {"Inch", " per inch"},
    {"Centimeter", " per centimeter"},
    {"2", " per inch"},
    {"3", " per centimeter"},
};
constexpr UnitWord kLength[] = {{"Inch", " inches"}, {"Centimeter", " centimeters"}};

// Exif 2.3, section 4.6.6.
constexpr UnitWord kSpeed[] = {{"K", " km/h"}, {"M", " miles per hour"}, {"N", " knots"}};
constexpr UnitWord kDistance[] = {{"K", " km"}, {"M", " miles"}, {"N", " nautical miles"}};
constexpr UnitWord kSide[] = {{"N", " N"}, {"S", " S"}, {"E", " E"}, {"W", " W"}};

constexpr Unit plain(std::string_view field, std::string_view mark) {
    return {.field = field, .marks = {mark}};
}

constexpr Unit named(std::string_view field, std::string_view namedBy,
                     std::span<const UnitWord> words) {
    return {.field = field, .marks = {}, .namedBy = namedBy, .words = words};
}

constexpr Unit angle(std::string_view field, std::string_view namedBy) {
    return {.field = field,
            .marks = {"\u00b0 ", "' ", "\""},
            .numbers = 3,
            .namedBy = namedBy,
            .words = kSide};
}

// TIFF 6.0, sections 8 and 12; Exif 2.3, section 4.6.5; of the GPS fields section 4.6.6.
constexpr Unit kUnits[] = {
    plain("ApertureValue", " APEX"),
    plain("BrightnessValue", " APEX"),
    plain("CompressedBitsPerPixel", " bits per pixel"),
    plain("ExposureBiasValue", " APEX"),
    {.field = "ExposureTime", .marks = {" s"}, .isQuotient = true},
    plain("FlashEnergy", " BCPS"),
    plain("FocalLength", " mm"),
    plain("FocalLengthIn35mmFilm", " mm"),
    named("FocalPlaneXResolution", "FocalPlaneResolutionUnit", kPerLength),
    named("FocalPlaneYResolution", "FocalPlaneResolutionUnit", kPerLength),
    plain("GPSAltitude", " m"),
    plain("GPSDestBearing", "\u00b0"),
    named("GPSDestDistance", "GPSDestDistanceRef", kDistance),
    angle("GPSDestLatitude", "GPSDestLatitudeRef"),
    angle("GPSDestLongitude", "GPSDestLongitudeRef"),
    plain("GPSImgDirection", "\u00b0"),
    angle("GPSLatitude", "GPSLatitudeRef"),
    angle("GPSLongitude", "GPSLongitudeRef"),
    named("GPSSpeed", "GPSSpeedRef", kSpeed),
    {.field = "GPSTimeStamp", .marks = {" h ", " min ", " s UTC"}, .numbers = 3},
    plain("GPSTrack", "\u00b0"),
    plain("MaxApertureValue", " APEX"),
    plain("ShutterSpeedValue", " APEX"),
    plain("SubjectDistance", " m"),
    named("XPosition", "ResolutionUnit", kLength),
    named("XResolution", "ResolutionUnit", kPerLength),
    named("YPosition", "ResolutionUnit", kLength),
    named("YResolution", "ResolutionUnit", kPerLength),
};
static_assert(std::ranges::adjacent_find(kUnits, std::ranges::greater_equal{}, &Unit::field) ==
              std::end(kUnits));

}  // namespace

const Unit* unitOf(std::string_view name) {
    const auto* const unit = std::ranges::lower_bound(kUnits, name, {}, &Unit::field);
    return unit != std::end(kUnits) && unit->field == name ? unit : nullptr;
}

}  // namespace veltrace::cli
