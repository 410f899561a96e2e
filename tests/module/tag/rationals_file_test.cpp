// Quotients, and the NaN of a division by zero.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

zephra::Message divisionByZero(const std::string& identifier, const std::string& name) {
    return message("ZEPHRA:veltrace:" + identifier + ":badTagValueDivisionByZero",
                   "The computation of the tag value for \"" + name +
                       "\" involves division by zero.  The value has been set to NaN.");
}

const zephra::Message kWarning = divisionByZero("rational", "Make");
const zephra::Message kSignedWarning = divisionByZero("signedRational", "Make");

TEST(Rational, IsAQuotientOfUnsignedNumbers) {
    expectShown({
        {Dir().rationals(kMake, {{4294967295, 1}}), "Make", "4294967295"},
        {Dir().rationals(kMake, {{4294967295, 4294967295}, {1, 4294967295}}), "Make",
         "2x1 [1 2.3283064370807974e-10]"},
        {Dir().rationals(kMake, {{3, 4294967295}}), "Make", "6.984919311242392e-10"},
    });
}

TEST(Rational, IsNaNWithOneWarningForATagWhereADenominatorIsZero) {
    expectShown({
        {Dir().rationals(kMake, {{1, 0}, {3, 2}}), "Make", "2x1 [nan 1.5]", {kWarning}},
        {Dir().rationals(kMake, {{1, 0}, {0, 0}, {0, 7}, {4294967295, 0}}),
         "Make",
         "4x1 [nan nan 0 nan]",
         {kWarning}},
        {Dir().rationals(272, {{1, 0}}).rationals(kMake, {{2, 0}}),
         "Model Make",
         "nan; nan",
         {divisionByZero("rational", "Model"), kWarning}},
    });
}

TEST(Rational, WarnsWithAnEmptyNameForAnUnknownTag) {
    expectShown({
        {Dir().rationals(65000, {{1, 0}}).signedRationals(65001, {{1, 0}}),
         "UnknownTags",
         "2x1 struct",
         {divisionByZero("rational", ""), divisionByZero("signedRational", "")}},
    });
}

TEST(Rational, IsComputedInEveryKindOfDirectory) {
    const ModuleRun run(tiffOf(Dir()
                                   .nest(34665, Dir().rationals(33434, {{1, 0}, {1, 2}}))
                                   .nest(34853, Dir().rationals(2, {{1, 0}, {1, 4}}))
                                   .nest(40965, Dir().signedRationals(4097, {{1, 0}, {-1, 8}}))));
    EXPECT_THAT(run.messages(), ElementsAre(divisionByZero("rational", "ExposureTime"),
                                            divisionByZero("rational", "GPSLatitude"),
                                            divisionByZero("signedRational", "RelatedImageWidth")));
    EXPECT_EQ(shown(run.value({"DigitalCamera", "ExposureTime"})), "2x1 [nan 0.5]");
    EXPECT_EQ(shown(run.value({"GPSInfo", "GPSLatitude"})), "2x1 [nan 0.25]");
    EXPECT_EQ(shown(run.value({"InteroperabilityIFD", "RelatedImageWidth"})), "2x1 [nan -0.125]");
}

TEST(SignedRational, KeepsItsSignSoMinusOneOverTwoIsMinusOneHalf) {
    expectShown({
        {Dir().signedRationals(kMake, {{-1, 2}, {1, -2}, {-1, -2}}), "Make", "3x1 [-0.5 -0.5 0.5]"},
        {Dir().signedRationals(kMake, {{kLowest, -1}, {kLowest, 1}, {1, kLowest}}), "Make",
         "3x1 [2147483648 -2147483648 -4.656612873077393e-10]"},
        {Dir().signedRationals(kMake, {{0, 5}, {0, -5}}), "Make", "2x1 [0 -0]"},
    });
}

TEST(SignedRational, IsNaNWithItsOwnWarningWhereTheDenominatorIsZeroAsInZeroOverZero) {
    expectShown({
        {Dir().signedRationals(kMake, {{0, 0}, {-1, 0}, {1, 4}}),
         "Make",
         "3x1 [nan nan 0.25]",
         {kSignedWarning}},
    });
}

}  // namespace

}  // namespace veltrace::test
