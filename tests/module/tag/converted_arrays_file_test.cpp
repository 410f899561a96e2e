// Colour maps and sample formats, which have host values of their own.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::Ge;
using ::testing::Le;

std::vector<std::uint16_t> ramp(std::size_t size) {
    std::vector<std::uint16_t> values(size);
    for (std::size_t i = 0; i < size; ++i) {
        values[i] = static_cast<std::uint16_t>(i * 85);
    }
    return values;
}

TEST(Colormap, HasAColumnForEachColourBetweenZeroAndOne) {
    expectShown({
        {Dir().shorts(320, {0, 65535, 13107, 26214, 39321, 52428}), "Colormap",
         "2x3 [0 1 0.2 0.4 0.6 0.8]"},
        {Dir().shorts(320, {1}), "Colormap", "0x3 []"},
        {Dir().shorts(320, {1, 2}), "Colormap", "0x3 []"},
        {Dir().shorts(320, {}), "Colormap", "none"},
        {Dir().rawAscii(320, "not numbers"), "Colormap", "none"},
        {Dir().doubles(320, {-65535, 131070, 32767.5}), "Colormap", "1x3 [-1 2 0.5]"},
    });
}

TEST(Colormap, IsDividedByTheSameNumberWhateverItsType) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir().bytes(320, {255, 51, 0}))).numbers({"Colormap"}),
                ElementsAre(255 / 65535.0, 51 / 65535.0, 0));
}

TEST(Colormap, Of768ValuesIs256By3BetweenZeroAndOneAndDropsFurtherOnes) {
    for (const std::size_t size : {768U, 769U, 770U}) {
        const ModuleRun run = quietRun(tiffOf(Dir().shorts(320, ramp(size))));
        EXPECT_THAT(run.dimensions({"Colormap"}), ElementsAre(256, 3)) << size;
        const auto numbers = run.numbers({"Colormap"});
        EXPECT_EQ(numbers.front(), 0);
        EXPECT_EQ(numbers.at(256), 256 * 85 / 65535.0);
        EXPECT_EQ(numbers.back(), 767 * 85 / 65535.0);
        EXPECT_THAT(numbers, Each(AllOf(Ge(0), Le(1)))) << size;
    }
}

TEST(SampleFormat, OfOneValueIsItsWord) {
    expectShown({
        {Dir().shorts(339, {1}), "SampleFormat", "'Unsigned integer'"},
        {Dir().shorts(339, {2}), "SampleFormat", "'Two's complement signed integer'"},
        {Dir().shorts(339, {3}), "SampleFormat", "'IEEE floating point'"},
        {Dir().shorts(339, {4}), "SampleFormat", "'Undefined'"},
        {Dir().shorts(339, {5}), "SampleFormat", "'Complex integer'"},
        {Dir().shorts(339, {6}), "SampleFormat", "'Complex IEEE floating point'"},
        {Dir().doubles(339, {kNaN}), "SampleFormat", "'Unknown'"},
    });
}

TEST(SampleFormat, OfSeveralValuesIsAColumnWithTheWordOfEach) {
    expectShown({
        {Dir().shorts(339, {1, 1, 1}), "SampleFormat",
         "3x1 {'Unsigned integer' 'Unsigned integer' 'Unsigned integer'}"},
        {Dir().shorts(339, {1, 2, 3, 4, 5, 6}), "SampleFormat",
         "6x1 {'Unsigned integer' 'Two's complement signed integer' 'IEEE floating point' "
         "'Undefined' 'Complex integer' 'Complex IEEE floating point'}"},
        {Dir().doubles(339, {1.9, 5.999, 6.0}), "SampleFormat",
         "3x1 {'Unsigned integer' 'Complex integer' 'Complex IEEE floating point'}"},
        {Dir().doubles(339, {1, kNaN}), "SampleFormat", "2x1 {'Unsigned integer' 'Unknown'}"},
        {Dir().shorts(339, {}), "SampleFormat", "0x1 {}"},
        {Dir().rawAscii(339, "1"), "SampleFormat", "0x1 {}"},
    });
}

TEST(SampleFormat, IsOneUnknownWhereAnyValueIsOutOfRangeAsInOneAndSeven) {
    const std::vector<std::vector<double>> formats{{0},     {7},     {1, 7},  {7, 1},    {1, 1, 0},
                                                   {0.999}, {6.001}, {-1, 2}, {6, 1e300}};
    for (const auto& format : formats) {
        expectShown({{Dir().doubles(339, format), "SampleFormat", "'Unknown'"}});
    }
}

}  // namespace

}  // namespace veltrace::test
