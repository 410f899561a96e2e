#include "render/measured_value.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

using Text = std::optional<std::string>;

/// The first of `fields` with its unit.
Text measuredOf(const Fields& fields) {
    const zephra::CallResult result = called(structures({fields}));
    return measured(result.output(), 0, 0);
}

Text measuredOf(const char* name, double value) {
    return measuredOf(Fields{{name, number(value)}});
}

Text measuredOf(const char* name, double value, const char* namedBy, std::string_view word) {
    return measuredOf(Fields{{name, number(value)}, {namedBy, characters(word)}});
}

TEST(Measured, FieldsWithAFixedUnitShowIt) {
    EXPECT_EQ(measuredOf("FocalLength", 35.5), "35.5 mm");
    EXPECT_EQ(measuredOf("FocalLengthIn35mmFilm", 50), "50 mm");
    EXPECT_EQ(measuredOf("SubjectDistance", 2.5), "2.5 m");
    EXPECT_EQ(measuredOf("FlashEnergy", 12), "12 BCPS");
    EXPECT_EQ(measuredOf("CompressedBitsPerPixel", 4), "4 bits per pixel");
    EXPECT_EQ(measuredOf("GPSAltitude", 412.25), "412.25 m");
    EXPECT_EQ(measuredOf("GPSTrack", 90), "90\u00b0");
    EXPECT_EQ(measuredOf("GPSImgDirection", 359.99), "359.99\u00b0");
    EXPECT_EQ(measuredOf("GPSDestBearing", 180), "180\u00b0");
    for (const char* const name : {"ShutterSpeedValue", "ApertureValue", "BrightnessValue",
                                   "ExposureBiasValue", "MaxApertureValue"}) {
        EXPECT_EQ(measuredOf(name, -0.5), "-0.5 APEX") << name;
    }
}

TEST(Measured, OnlyAnExposureOfOneOverNSecondsShowsTheFraction) {
    EXPECT_EQ(measuredOf("ExposureTime", 0.008), "0.008 s (1/125 s)");
    EXPECT_EQ(measuredOf("ExposureTime", 1.0 / 3.0), "0.3333333 s (1/3 s)");
    EXPECT_EQ(measuredOf("ExposureTime", 1.0 / 4294967295.0), "2.328306e-10 s (1/4294967295 s)");
    EXPECT_EQ(measuredOf("ExposureTime", 0.3), "0.3 s");
    EXPECT_EQ(measuredOf("ExposureTime", 1), "1 s");
    EXPECT_EQ(measuredOf("ExposureTime", 30), "30 s");
    EXPECT_EQ(measuredOf("ExposureTime", 0), "0 s");
    EXPECT_EQ(measuredOf("ExposureTime", -0.5), "-0.5 s");
    EXPECT_EQ(measuredOf("ExposureTime", 0x1p-32), "2.328306e-10 s");
    EXPECT_EQ(measuredOf("ExposureTime", std::nan("")), "NaN s");
    EXPECT_EQ(measuredOf("ExposureTime", HUGE_VAL), "Infinity s");
}

TEST(Measured, AnAngleHasItsSideIfKnownAndATimeStampItsUnits) {
    const auto angle = [](const char* name, const char* namedBy, std::string_view side) {
        return measuredOf(
            Fields{{name, numbers(3, 1, {47, 22, 11.9})}, {namedBy, characters(side)}});
    };
    EXPECT_EQ(angle("GPSLatitude", "GPSLatitudeRef", "N\0"s), "47\u00b0 22' 11.9\" N");
    EXPECT_EQ(angle("GPSLongitude", "GPSLongitudeRef", "W"), "47\u00b0 22' 11.9\" W");
    EXPECT_EQ(angle("GPSDestLatitude", "GPSDestLatitudeRef", "S"), "47\u00b0 22' 11.9\" S");
    EXPECT_EQ(angle("GPSDestLongitude", "GPSDestLongitudeRef", "E"), "47\u00b0 22' 11.9\" E");
    EXPECT_EQ(measuredOf(Fields{{"GPSLatitude", numbers(3, 1, {47, 22.5, 0})}}),
              "47\u00b0 22.5' 0\"");
    EXPECT_EQ(measuredOf(Fields{{"GPSLatitude", numbers(3, 1, {47, 22.5, 0})},
                                {"GPSLatitudeRef", characters("\x1b")}}),
              "47\u00b0 22.5' 0\"");
    EXPECT_EQ(measuredOf(Fields{{"GPSTimeStamp", numbers(3, 1, {14, 27, 5.5})}}),
              "14 h 27 min 5.5 s UTC");
}

TEST(Measured, TheResolutionUnitNamesTheUnitOfResolutionsAndPositions) {
    EXPECT_EQ(measuredOf("XResolution", 72, "ResolutionUnit", "Inch"), "72 per inch");
    EXPECT_EQ(measuredOf("YResolution", 28.5, "ResolutionUnit", "Centimeter"),
              "28.5 per centimeter");
    EXPECT_EQ(measuredOf("XPosition", 1.5, "ResolutionUnit", "Inch"), "1.5 inches");
    EXPECT_EQ(measuredOf("YPosition", 4, "ResolutionUnit", "Centimeter"), "4 centimeters");
    EXPECT_EQ(measuredOf("XResolution", 72, "ResolutionUnit", "None"), "72");
    EXPECT_EQ(measuredOf("XResolution", 72), "72");
}

TEST(Measured, ANumberOrALetterBesideAValueNamesItsUnit) {
    const auto resolution = [](const char* name, double unit) {
        return measuredOf(Fields{{name, number(2900)}, {"FocalPlaneResolutionUnit", number(unit)}});
    };
    EXPECT_EQ(resolution("FocalPlaneXResolution", 2), "2900 per inch");
    EXPECT_EQ(resolution("FocalPlaneYResolution", 3), "2900 per centimeter");
    EXPECT_EQ(resolution("FocalPlaneYResolution", 1), "2900");
    EXPECT_EQ(measuredOf("GPSSpeed", 50, "GPSSpeedRef", "K"), "50 km/h");
    EXPECT_EQ(measuredOf("GPSSpeed", 50, "GPSSpeedRef", "M"), "50 miles per hour");
    EXPECT_EQ(measuredOf("GPSSpeed", 50, "GPSSpeedRef", "N\0"s), "50 knots");
    EXPECT_EQ(measuredOf("GPSDestDistance", 3, "GPSDestDistanceRef", "K"), "3 km");
    EXPECT_EQ(measuredOf("GPSDestDistance", 3, "GPSDestDistanceRef", "M"), "3 miles");
    EXPECT_EQ(measuredOf("GPSDestDistance", 3, "GPSDestDistanceRef", "N"), "3 nautical miles");
}

TEST(Measured, IsNothingWithoutAUnitOrForTheWrongCountOfNumbers) {
    EXPECT_EQ(measuredOf("Width", 640), std::nullopt);
    EXPECT_EQ(measuredOf("FNumber", 2.8), std::nullopt);
    EXPECT_EQ(measuredOf("", 1), std::nullopt);
    EXPECT_EQ(measuredOf("Zzz", 1), std::nullopt);
    EXPECT_EQ(measuredOf("GPSLatitude", 47.5), std::nullopt);
    EXPECT_EQ(measuredOf(Fields{{"FocalLength", numbers(2, 1, {35, 70})}}), std::nullopt);
    EXPECT_EQ(measuredOf(Fields{{"FocalLength", nullptr}}), std::nullopt);
    EXPECT_EQ(measuredOf(Fields{{"FocalLength", characters("3")}}), std::nullopt);
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ExactNumber, IsTheShortestTextThatReadsBack) {
    EXPECT_EQ(exactNumber(0.1), "0.1");
    EXPECT_EQ(exactNumber(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(exactNumber(5e-324), "5e-324");
    EXPECT_EQ(exactNumber(300), "300");
    EXPECT_EQ(exactNumber(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(exactNumber(-4294967295.0), "-4294967295");
    EXPECT_EQ(exactNumber(-0.0), "-0");
    EXPECT_EQ(exactNumber(-std::nan("")), "NaN");
    EXPECT_EQ(exactNumber(kInfinity), "Infinity");
    EXPECT_EQ(exactNumber(-kInfinity), "-Infinity");
}

TEST(BriefNumber, ShowsFractionsToSevenDigitsAndOtherNumbersExactly) {
    EXPECT_EQ(briefNumber(0.008), "0.008");
    EXPECT_EQ(briefNumber(2.0 / 3.0), "0.6666667");
    EXPECT_EQ(briefNumber(0.3127000033855438), "0.3127");
    EXPECT_EQ(briefNumber(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(briefNumber(std::nan("")), "NaN");
    EXPECT_EQ(briefNumber(-kInfinity), "-Infinity");
}

}  // namespace
}  // namespace veltrace::cli
