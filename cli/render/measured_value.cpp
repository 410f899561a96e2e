#include "render/measured_value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <iterator>
#include <span>
#include <string_view>

#include "render/escape.h"

namespace veltrace::cli {
namespace {

/// A unit by the value of the field that names it.
struct UnitWord {
    std::string_view value;  ///< its text, or its number as text
    std::string_view mark;   ///< what follows the number
};

struct Unit {
    std::string_view field;
    std::array<std::string_view, 3> marks;  ///< what follows each of its numbers
    std::size_t numbers = 1;
    std::string_view namedBy = {};  ///< the field beside it that has one of `words`, if any
    std::span<const UnitWord> words = {};
    bool isQuotient = false;  ///< usually written as 1/n
};

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

/// The unit of the field `name`; null for one that has none.
const Unit* unitOf(std::string_view name) {
    const auto* const unit = std::ranges::lower_bound(kUnits, name, {}, &Unit::field);
    return unit != std::end(kUnits) && unit->field == name ? unit : nullptr;
}

/// The value of a field that names a unit.
std::string wordOf(zephra::Value value) {
    if (value.numbers().size() == 1) {
        return briefNumber(value.numbers().front());
    }
    return withoutFinalNuls(value.text());
}

std::string_view namedMark(const Unit& unit, zephra::Value directories, std::size_t element) {
    if (unit.namedBy.empty()) {
        return {};
    }
    const std::string value = wordOf(directories.field(element, unit.namedBy));
    const auto word = std::ranges::find(unit.words, value, &UnitWord::value);
    return word != unit.words.end() ? word->mark : std::string_view{};
}

/// " (1/125 s)" when `number` is 1 divided by a 32-bit integer.
std::string asQuotient(double number, std::string_view mark) {
    const double divisor = std::round(1.0 / number);
    const bool isQuotient = divisor >= 2.0 && divisor < 0x1p32 && 1.0 / divisor == number;
    return isQuotient ? fmt::format(" (1/{}{})", divisor, mark) : "";
}

}  // namespace

std::string exactNumber(double number) {
    if (std::isnan(number)) {
        return "NaN";
    }
    if (std::isinf(number)) {
        return number > 0 ? "Infinity" : "-Infinity";
    }
    return fmt::format("{}", number);
}

std::string briefNumber(double number) {
    const bool isFraction = std::isfinite(number) && number != std::trunc(number);
    return isFraction ? fmt::format("{:.7g}", number) : exactNumber(number);
}

std::optional<std::string> measured(zephra::Value directories, std::size_t element,
                                    std::size_t field) {
    const auto numbers = directories.field(element, field).numbers();
    const Unit* const unit = unitOf(directories.fieldName(field));
    if (unit == nullptr || numbers.size() != unit->numbers) {
        return std::nullopt;
    }
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        text += briefNumber(numbers[i]);
        text += unit->marks[i];
    }
    text += namedMark(*unit, directories, element);
    if (unit->isQuotient) {
        text += asQuotient(numbers.front(), unit->marks.front());
    }
    return text;
}

}  // namespace veltrace::cli
