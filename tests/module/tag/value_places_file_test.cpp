// Where a value lies: inside its entry, or elsewhere in the file.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr std::uint16_t kUnknown = 65000;  // its output has the position of the value

struct ElementSize {
    std::uint16_t type;
    std::uint32_t bytes;
};
constexpr ElementSize kElementSizes[] = {{1, 1}, {2, 1}, {3, 2}, {4, 4},  {5, 8},  {6, 1},
                                         {7, 1}, {8, 2}, {9, 4}, {10, 8}, {11, 4}, {12, 8}};

class ValuePlaces : public ::testing::TestWithParam<Encoding> {
protected:
    [[nodiscard]] double reportedOffset(const ElementSize& element, std::uint32_t count) const {
        TiffBuilder file(GetParam().order, GetParam().flavour);
        file.image().entry(kUnknown, element.type, count, Bytes(count * element.bytes, 1));
        const ModuleRun run = quietRun(file.bytes());
        return run.number({"UnknownTags", "Offset"});
    }
};

TEST_P(ValuePlaces, AreTheEntryAsLongAsTheValueFits) {
    const bool big = GetParam().flavour == Flavour::big;
    const std::uint32_t capacity = big ? 8 : 4;
    const double behindTheTable = big ? 16 + 8 + 20 + 8 : 8 + 2 + 12 + 4;
    for (const ElementSize& element : kElementSizes) {
        SCOPED_TRACE(element.type);
        const std::uint32_t fitting = capacity / element.bytes;
        EXPECT_EQ(reportedOffset(element, fitting + 1), behindTheTable);
        if (fitting > 0) {
            EXPECT_EQ(reportedOffset(element, fitting), 0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, ValuePlaces, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(ValuePlace, OfTwoShortsIsAClassicEntryAndOfThreeIsElsewhere) {
    TiffBuilder file;
    file.image().shorts(65000, {7, 8}).shorts(65001, {7, 8, 9});
    const ModuleRun run(file.bytes());
    const zephra::Value unknown = run.value({"UnknownTags"});
    EXPECT_THAT(unknown.field(0, "Offset").numbers(), ElementsAre(0));
    EXPECT_THAT(unknown.field(0, "Value").numbers(), ElementsAre(7, 8));
    EXPECT_THAT(unknown.field(1, "Offset").numbers(), ElementsAre(8 + 2 + 2 * 12 + 4));
    EXPECT_THAT(unknown.field(1, "Value").numbers(), ElementsAre(7, 8, 9));
}

TEST(ValuePlace, OfARationalIsTheEntryOnlyInBigTiff) {
    TiffBuilder classic(Order::little, Flavour::classic);
    classic.image().rationals(kUnknown, {{1, 4}});
    EXPECT_EQ(ModuleRun(classic.bytes()).number({"UnknownTags", "Offset"}), 26);
    TiffBuilder big(Order::little, Flavour::big);
    big.image().rationals(kUnknown, {{1, 4}});
    EXPECT_EQ(ModuleRun(big.bytes()).number({"UnknownTags", "Offset"}), 0);
}

TEST(ValuePlace, StartsAtByteEightOfAClassicEntry) {
    TiffBuilder file(Order::big, Flavour::classic);
    file.image().entry(kMake, 3, 1, {1, 2});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"Make"}), 258);
}

TEST(ValuePlace, StartsAtByteTwelveOfABigTiffEntry) {
    TiffBuilder file(Order::little, Flavour::big);
    file.image().entry(kUnknown, 3, 4, {1, 0, 2, 0, 3, 0, 4, 0});
    Bytes bytes = file.bytes();
    const auto entry = static_cast<std::ptrdiff_t>(file.entryPosition(file.image(), 0));
    std::fill_n(bytes.begin() + entry + 8, 4, std::uint8_t{0xEE});
    const ModuleRun run = quietRun(bytes);
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 0);
}

// A BigTIFF entry as published has the upper half of its count at byte 8, which is 0.
TEST(ValuePlace, OfAPublishedBigTiffEntryOutsideItIsTheStartOfTheFile) {
    TiffBuilder file(Order::little, Flavour::big);
    file.image().entryAt(kMake, 1, 9, 0);
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre('I', 'I', 43, 0, 8, 0, 0, 0, 16));
}

// In big-endian order the upper half of a published count comes first.
TEST(ValuePlace, OfAPublishedBigEndianBigTiffEntryIsNowhere) {
    TiffBuilder file(Order::big, Flavour::big);
    file.image().entryAt(kMake, 3, 0, 1);
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_FALSE(run.value({"Make"}));
}

TEST(ValuePlace, CountsFromTheHeaderInsideAJpegFileAndIsReportedSo) {
    TiffBuilder file;
    file.image().longs(kUnknown, {4, 5, 6});
    const ModuleRun run = quietRun(jpegWithExif(file.bytes()));
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(4, 5, 6));
    EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 26);
}

// The offset is unsigned, and the file has a hole up to the value.
TEST(ValuePlace, BeyondTwoGigabytesIsReadAndReportedAsItIs) {
    constexpr std::uint32_t kFarAway = 3'000'000'000;
    TiffBuilder file;
    file.image().entryAt(kUnknown, 3, 3, kFarAway);
    const MemoryFile memory(file.bytes());
    memory.put(kFarAway, {7, 0, 8, 0, 9, 0});
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 3'000'000'000.0);
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(7, 8, 9));
}

TEST(ByteOrder, SwapsEachHalfOfARationalAlone) {
    const Bytes twoFifths{0, 0, 0, 2, 0, 0, 0, 5};
    for (const Flavour flavour : {Flavour::classic, Flavour::big}) {
        TiffBuilder file(Order::big, flavour);
        file.image().entry(kMake, 5, 1, twoFifths).entry(272, 10, 1, twoFifths);
        const ModuleRun run(file.bytes());
        EXPECT_EQ(run.number({"Make"}), 0.4);
        EXPECT_EQ(run.number({"Model"}), 0.4);
    }
}

TEST(ByteOrder, LeavesSingleBytesAlone) {
    TiffBuilder file(Order::big, Flavour::classic);
    file.image().entry(kMake, 1, 3, {1, 2, 3}).entry(272, 2, 5, bytesOf("abcde"));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(1, 2, 3));
    EXPECT_EQ(run.text({"Model"}), "abcde");
}

TEST(ByteOrder, ReversesAllEightBytesOfADouble) {
    TiffBuilder file(Order::big, Flavour::classic);
    file.image().entry(kMake, 12, 1, {0x40, 0x09, 0x21, 0xFB, 0x54, 0x44, 0x2D, 0x18});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"Make"}), 3.141592653589793);
}

}  // namespace

}  // namespace veltrace::test
