// Quotients, and what stands for those that there are not.
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNan;

constexpr std::uint16_t kMake = 271;
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

zephra::Message divisionByZero(const char* identifier, const std::string& name) {
    return message(identifier, "The computation of the tag value for \"" + name +
                                   "\" involves division by zero.  The value has been set to NaN.");
}
zephra::Message unsignedWarning(const std::string& name) {
    return divisionByZero("ZEPHRA:veltrace:rational:badTagValueDivisionByZero", name);
}
zephra::Message signedWarning(const std::string& name) {
    return divisionByZero("ZEPHRA:veltrace:signedRational:badTagValueDivisionByZero", name);
}

TEST(Rational, IsNaNWithAWarningWhereTheDenominatorIsZero) {
    TiffBuilder file;
    file.image().rationals(kMake, {{1, 0}, {3, 2}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(unsignedWarning("Make")));
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(IsNan(), 1.5));
}

TEST(Rational, WarnsOnceForATagHoweverManyZerosItHas) {
    TiffBuilder file;
    file.image().rationals(kMake, {{1, 0}, {0, 0}, {0, 7}, {4294967295, 0}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(unsignedWarning("Make")));
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(IsNan(), IsNan(), 0, IsNan()));
}

TEST(Rational, WarnsForEachTag) {
    TiffBuilder file;
    file.image().rationals(272, {{1, 0}}).rationals(kMake, {{2, 0}}).rationals(305, {{2, 1}});
    EXPECT_THAT(ModuleRun(file.bytes()).messages(),
                ElementsAre(unsignedWarning("Model"), unsignedWarning("Make")));
}

TEST(Rational, WarnsWithAnEmptyNameForAnUnknownTag) {
    TiffBuilder file;
    file.image().rationals(65000, {{1, 0}}).signedRationals(65001, {{1, 0}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(unsignedWarning(""), signedWarning("")));
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(IsNan()));
}

TEST(Rational, IsComputedInEveryKindOfDirectory) {
    TiffBuilder file;
    file.image()
        .sub(34665, file.child().rationals(33434, {{1, 0}, {1, 2}}))
        .sub(34853, file.child().rationals(2, {{1, 0}, {1, 4}}))
        .sub(40965, file.child().signedRationals(4097, {{1, 0}, {-1, 8}}));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(),
                ElementsAre(unsignedWarning("ExposureTime"), unsignedWarning("GPSLatitude"),
                            signedWarning("RelatedImageWidth")));
    EXPECT_THAT(run.numbers({"DigitalCamera", "ExposureTime"}), ElementsAre(IsNan(), 0.5));
    EXPECT_THAT(run.numbers({"GPSInfo", "GPSLatitude"}), ElementsAre(IsNan(), 0.25));
    EXPECT_THAT(run.numbers({"InteroperabilityIFD", "RelatedImageWidth"}),
                ElementsAre(IsNan(), -0.125));
}

TEST(Rational, ReadsBothWordsUnsigned) {
    TiffBuilder file;
    file.image().rationals(kMake, {{4294967295, 1}, {1, 4294967295}, {4294967295, 4294967295}});
    EXPECT_THAT(ModuleRun(file.bytes()).numbers({"Make"}),
                ElementsAre(4294967295, 1.0 / 4294967295.0, 1));
}

TEST(SignedRational, KeepsItsSignSoMinusOneOverTwoIsMinusOneHalf) {
    TiffBuilder file;
    file.image().signedRationals(kMake, {{-1, 2}, {1, -2}, {-1, -2}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(-0.5, -0.5, 0.5));
}

TEST(SignedRational, DividesTheLowestNumberByMinusOne) {
    TiffBuilder file;
    file.image().signedRationals(kMake, {{kLowest, -1}, {kLowest, 1}, {1, kLowest}});
    EXPECT_THAT(ModuleRun(file.bytes()).numbers({"Make"}),
                ElementsAre(2147483648, -2147483648.0, -0x1p-31));
}

TEST(SignedRational, IsNaNWithItsOwnWarningWhereTheDenominatorIsZeroAsInZeroOverZero) {
    TiffBuilder file;
    file.image().signedRationals(kMake, {{0, 0}, {-1, 0}, {1, 4}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(signedWarning("Make")));
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(IsNan(), IsNan(), 0.25));
}

TEST(SignedRational, OfZeroTakesTheSignOfTheDenominator) {
    TiffBuilder file;
    file.image().signedRationals(kMake, {{0, 5}, {0, -5}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    const auto numbers = run.numbers({"Make"});
    EXPECT_THAT(numbers, ElementsAre(0, 0));
    EXPECT_FALSE(std::signbit(numbers.at(0)));
    EXPECT_TRUE(std::signbit(numbers.at(1)));
}

}  // namespace

}  // namespace veltrace::test
