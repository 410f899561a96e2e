// Colour maps and sample formats, which have host values of their own.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "support/encodings.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;

std::vector<std::uint16_t> ramp(std::size_t size) {
    std::vector<std::uint16_t> values(size);
    for (std::size_t i = 0; i < size; ++i) {
        values[i] = static_cast<std::uint16_t>(i * 85);
    }
    return values;
}

class Colormaps : public ::testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file{GetParam().order, GetParam().flavour};
};

TEST_P(Colormaps, HaveAColumnForEachColourBetweenZeroAndOne) {
    file.image().shorts(320, {0, 65535, 13107, 26214, 1, 65534});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_THAT(run.dimensions({"Colormap"}), ElementsAre(2, 3));
    EXPECT_THAT(run.numbers({"Colormap"}),
                ElementsAre(0, 1, 0.2, 0.4, 1 / 65535.0, 65534 / 65535.0));
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, Colormaps, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(Colormap, Of768ValuesIs256By3BetweenZeroAndOneAndDropsFurtherOnes) {
    for (const std::size_t size : {768U, 769U, 770U}) {
        TiffBuilder file;
        file.image().shorts(320, ramp(size));
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        EXPECT_THAT(run.dimensions({"Colormap"}), ElementsAre(256, 3)) << size;
        const auto numbers = run.numbers({"Colormap"});
        EXPECT_EQ(numbers.front(), 0);
        EXPECT_EQ(numbers.at(256), 256 * 85 / 65535.0);
        EXPECT_EQ(numbers.back(), 767 * 85 / 65535.0);
        EXPECT_THAT(numbers, Each(AllOf(Ge(0), Le(1)))) << size;
    }
}

TEST(Colormap, OfLessThanThreeValuesHasNoRows) {
    for (const std::size_t size : {1U, 2U}) {
        TiffBuilder file;
        file.image().shorts(320, ramp(size));
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        EXPECT_EQ(run.value({"Colormap"}).className(), "double");
        EXPECT_THAT(run.dimensions({"Colormap"}), ElementsAre(0, 3));
    }
}

TEST(Colormap, WithoutNumbersIsNoValue) {
    TiffBuilder file;
    file.image().shorts(320, {});
    file.addImage().rawAscii(320, "not numbers");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.value({"Colormap"}, 0));
    EXPECT_FALSE(run.value({"Colormap"}, 1));
}

TEST(Colormap, IsDividedByTheSameNumberWhateverItsType) {
    TiffBuilder file;
    file.image().bytes(320, {255, 51, 0}).shorts(305, {1});
    file.addImage().doubles(320, {-65535, 131070, 0.5});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.numbers({"Colormap"}), ElementsAre(255 / 65535.0, 51 / 65535.0, 0));
    EXPECT_THAT(run.numbers({"Colormap"}, 1), ElementsAre(-1, 2, 0.5 / 65535.0));
}

std::vector<std::string> cells(const zephra::Value& value) {
    EXPECT_EQ(value.className(), "cell");
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < value.size(); ++i) {
        texts.push_back(value.cell(i).text());
    }
    return texts;
}

TEST(SampleFormat, OfOneValueIsItsWord) {
    const char* const words[] = {"Unsigned integer",    "Two's complement signed integer",
                                 "IEEE floating point", "Undefined",
                                 "Complex integer",     "Complex IEEE floating point"};
    TiffBuilder file;
    for (std::uint16_t code = 1; code <= 6; ++code) {
        file.addImage().shorts(339, {code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(run.text({"SampleFormat"}, i), words[i]);
    }
}

TEST(SampleFormat, OfThreeOnesIsAColumnOfThreeWords) {
    TiffBuilder file;
    file.image().shorts(339, {1, 1, 1});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_THAT(run.dimensions({"SampleFormat"}), ElementsAre(3, 1));
    EXPECT_THAT(cells(run.value({"SampleFormat"})),
                ElementsAre("Unsigned integer", "Unsigned integer", "Unsigned integer"));
}

TEST(SampleFormat, OfSeveralValuesHasTheWordOfEach) {
    TiffBuilder file;
    file.image().shorts(339, {1, 2, 3, 4, 5, 6});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_THAT(run.dimensions({"SampleFormat"}), ElementsAre(6, 1));
    EXPECT_THAT(
        cells(run.value({"SampleFormat"})),
        ElementsAre("Unsigned integer", "Two's complement signed integer", "IEEE floating point",
                    "Undefined", "Complex integer", "Complex IEEE floating point"));
}

TEST(SampleFormat, IsOneUnknownWhereAnyValueIsOutOfRangeAsInOneAndSeven) {
    const std::vector<std::vector<double>> formats{{0},     {7},     {1, 7},  {7, 1},    {1, 1, 0},
                                                   {0.999}, {6.001}, {-1, 2}, {6, 1e300}};
    for (const auto& format : formats) {
        TiffBuilder file;
        file.image().doubles(339, format);
        EXPECT_EQ(ModuleRun(file.bytes()).text({"SampleFormat"}), "Unknown")
            << ::testing::PrintToString(format);
    }
}

TEST(SampleFormat, CutsOffFractions) {
    TiffBuilder file;
    file.image().doubles(339, {1.9, 5.999, 6.0});
    EXPECT_THAT(cells(ModuleRun(file.bytes()).value({"SampleFormat"})),
                ElementsAre("Unsigned integer", "Complex integer", "Complex IEEE floating point"));
}

TEST(SampleFormat, IsUnknownForTheValueThatIsNoNumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TiffBuilder file;
    file.image().doubles(339, {1, nan});
    file.addImage().doubles(339, {nan});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_THAT(cells(run.value({"SampleFormat"})), ElementsAre("Unsigned integer", "Unknown"));
    EXPECT_EQ(run.text({"SampleFormat"}, 1), "Unknown");
}

TEST(SampleFormat, WithoutNumbersIsAnEmptyColumnOfCells) {
    TiffBuilder file;
    file.image().shorts(339, {});
    file.addImage().rawAscii(339, "1");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (const std::size_t element : {0U, 1U}) {
        EXPECT_EQ(run.value({"SampleFormat"}, element).className(), "cell");
        EXPECT_THAT(run.dimensions({"SampleFormat"}, element), ElementsAre(0, 1));
    }
}

}  // namespace

}  // namespace veltrace::test
