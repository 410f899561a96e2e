// The fields about the file, which are the same in every element.
#include <ctime>

#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/time_zone.h"

namespace veltrace::test {

namespace {

class GeneralFields : public ::testing::TestWithParam<Encoding> {};

TEST_P(GeneralFields, AreInEveryElement) {
    const Bytes bytes = tiffOf(GetParam(), Dir().shorts(271, {1}), Dir().shorts(271, {2}));
    const MemoryFile memory(bytes);
    memory.setModificationTime(1000000000);
    const TimeZone zone("UTC0");
    const ModuleRun run = quietRun(memory);
    const bool big = GetParam().order == Order::big;
    for (const std::size_t element : {0U, 1U}) {
        EXPECT_EQ(run.text({"Filename"}, element), memory.name());
        EXPECT_EQ(run.text({"FileModDate"}, element), "09-Sep-2001 01:46:40");
        EXPECT_EQ(run.number({"FileSize"}, element), static_cast<double>(bytes.size()));
        EXPECT_EQ(run.text({"Format"}, element), "tif");
        EXPECT_FALSE(run.value({"FormatVersion"}, element));
        EXPECT_EQ(run.text({"ByteOrder"}, element), big ? "big-endian" : "little-endian");
        EXPECT_THAT(run.dimensions({"FormatSignature"}, element), ElementsAre(1, 4));
    }
}

TEST_P(GeneralFields, AreInGenericSubDirectoriesToo) {
    const MemoryFile memory(tiffOf(
        GetParam(), Dir().nest(330, Dir().shorts(256, {7}).shorts(257, {5}).shorts(262, {2}))));
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.text({"SubIFDs", "Filename"}), memory.name());
    EXPECT_EQ(run.text({"SubIFDs", "Format"}), "tif");
    EXPECT_EQ(run.number({"SubIFDs", "Width"}), 7);
    EXPECT_EQ(run.number({"SubIFDs", "Height"}), 5);
    EXPECT_EQ(run.text({"SubIFDs", "ColorType"}), "truecolor");
    EXPECT_EQ(run.number({"SubIFDs", "BitDepth"}), 1);
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, GeneralFields, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

std::vector<double> signature(Order order, Flavour flavour, std::optional<std::uint16_t> version) {
    TiffBuilder file(order, flavour);
    file.image().shorts(271, {1});
    if (version) {
        file.version(*version);
    }
    const ModuleRun run = quietRun(file.bytes());
    return run.numbers({"FormatSignature"});
}

TEST(FormatSignature, IsTheByteOrderMarkAndTheVersionInTheOrderOfThisComputer) {
    EXPECT_THAT(signature(Order::little, Flavour::classic, 42), ElementsAre(73, 73, 42, 0));
    EXPECT_THAT(signature(Order::big, Flavour::classic, 42), ElementsAre(77, 77, 42, 0));
    EXPECT_THAT(signature(Order::little, Flavour::big, 43), ElementsAre(73, 73, 43, 0));
}

// Such a file is recognised by its bytes 2B 00, which are 0x2B00 in its own order.
TEST(FormatSignature, OfABigEndianBigTiffFileHasItsVersionSwapped) {
    EXPECT_THAT(signature(Order::big, Flavour::big, {}), ElementsAre(77, 77, 0, 43));
}

TEST(JpegFile, IsJpgWithAnEmptySignatureAndNoByteOrder) {
    const MemoryFile memory(jpegWithExif(tiffOf({Order::big}, Dir().shorts(271, {1}))));
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.text({"Filename"}), memory.name());
    EXPECT_EQ(run.text({"Format"}), "jpg");
    ASSERT_TRUE(run.value({"FormatSignature"}));
    EXPECT_EQ(run.value({"FormatSignature"}).className(), "double");
    EXPECT_THAT(run.dimensions({"FormatSignature"}), ElementsAre(0, 0));
    EXPECT_FALSE(run.hasField({"ByteOrder"}));
    EXPECT_TRUE(run.hasField({"FormatVersion"}));
    EXPECT_FALSE(run.value({"FormatVersion"}));
}

Bytes smallFile() {
    return tiffOf(Dir().shorts(271, {1}));
}

TEST(FileSize, MayNeedMoreThan32Bits) {
    const MemoryFile memory(smallFile());
    memory.put(4'999'999'999, {0});
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.number({"FileSize"}), 5'000'000'000.0);
}

std::string dateOf(std::time_t time) {
    const MemoryFile memory(smallFile());
    memory.setModificationTime(time);
    const ModuleRun run = quietRun(memory);
    return run.text({"FileModDate"});
}

// Seconds from 1970-01-01 to 100000000-01-01.
constexpr std::time_t kYear100000000 = 3155633032780800;
constexpr std::time_t kYearTooLargeForAnInteger = 100000000000000000;

TEST(FileModDate, IsLocalWithADayAMonthNameAYearAndATime) {
    const TimeZone zone("XYZ-3");
    EXPECT_EQ(dateOf(1000000000), "09-Sep-2001 04:46:40");
    EXPECT_THAT(ModuleRun(smallFile()).dimensions({"FileModDate"}), ElementsAre(1, 20));
    const TimeZone greenwich("UTC0");
    EXPECT_EQ(dateOf(0), "01-Jan-1970 00:00:00");
    EXPECT_EQ(dateOf(1000000000), "09-Sep-2001 01:46:40");
    EXPECT_EQ(dateOf(-1), "31-Dec-1969 23:59:59");
    EXPECT_EQ(dateOf(kYear100000000 - 1), "31-Dec-99999999 23:59:59");
}

TEST(FileModDate, EndsTheCallWhenItCannotBeFormatted) {
    const TimeZone zone("UTC0");
    for (const std::time_t time : {kYear100000000, kYearTooLargeForAnInteger}) {
        const MemoryFile memory(smallFile());
        memory.setModificationTime(time);
        const LeakTolerance tolerance;
        const ModuleRun run(memory);
        EXPECT_THAT(run.warnings(), IsEmpty());
        EXPECT_EQ(run.error(), unknownDate());
    }
}

}  // namespace

}  // namespace veltrace::test
