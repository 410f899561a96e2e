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
        const ModuleRun run =
            quietRun(tiffOf(GetParam(), Dir().entry(kUnknown, element.type, count,
                                                    Bytes(count * element.bytes, 1))));
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
    const ModuleRun run(tiffOf(Dir().shorts(65000, {7, 8}).shorts(65001, {7, 8, 9})));
    const zephra::Value unknown = run.value({"UnknownTags"});
    EXPECT_THAT(unknown.field(0, "Offset").numbers(), ElementsAre(0));
    EXPECT_THAT(unknown.field(0, "Value").numbers(), ElementsAre(7, 8));
    EXPECT_THAT(unknown.field(1, "Offset").numbers(), ElementsAre(8 + 2 + 2 * 12 + 4));
    EXPECT_THAT(unknown.field(1, "Value").numbers(), ElementsAre(7, 8, 9));
}

TEST(ValuePlace, OfARationalIsTheEntryOnlyInBigTiff) {
    EXPECT_EQ(
        ModuleRun(tiffOf({Order::little, Flavour::classic}, Dir().rationals(kUnknown, {{1, 4}})))
            .number({"UnknownTags", "Offset"}),
        26);
    EXPECT_EQ(ModuleRun(tiffOf({Order::little, Flavour::big}, Dir().rationals(kUnknown, {{1, 4}})))
                  .number({"UnknownTags", "Offset"}),
              0);
}

TEST(ValuePlace, StartsAtByteEightOfAClassicEntry) {
    EXPECT_EQ(ModuleRun(tiffOf({Order::big, Flavour::classic}, Dir().entry(kMake, 3, 1, {1, 2})))
                  .number({"Make"}),
              258);
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
    const ModuleRun run =
        quietRun(tiffOf({Order::little, Flavour::big}, Dir().entryAt(kMake, 1, 9, 0)));
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre('I', 'I', 43, 0, 8, 0, 0, 0, 16));
}

// In big-endian order the upper half of a published count comes first.
TEST(ValuePlace, OfAPublishedBigEndianBigTiffEntryIsNowhere) {
    const ModuleRun run =
        quietRun(tiffOf({Order::big, Flavour::big}, Dir().entryAt(kMake, 3, 0, 1)));
    EXPECT_FALSE(run.value({"Make"}));
}

TEST(ValuePlace, CountsFromTheHeaderInsideAJpegFileAndIsReportedSo) {
    const ModuleRun run = quietRun(jpegWithExif(tiffOf(Dir().longs(kUnknown, {4, 5, 6}))));
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(4, 5, 6));
    EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 26);
}

// The offset is unsigned, and the file has a hole up to the value.
TEST(ValuePlace, BeyondTwoGigabytesIsReadAndReportedAsItIs) {
    constexpr std::uint32_t kFarAway = 3'000'000'000;
    const MemoryFile memory(tiffOf(Dir().entryAt(kUnknown, 3, 3, kFarAway)));
    memory.put(kFarAway, {7, 0, 8, 0, 9, 0});
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 3'000'000'000.0);
    EXPECT_THAT(run.numbers({"UnknownTags", "Value"}), ElementsAre(7, 8, 9));
}

TEST(ByteOrder, SwapsEachHalfOfARationalAlone) {
    const Bytes twoFifths{0, 0, 0, 2, 0, 0, 0, 5};
    for (const Flavour flavour : {Flavour::classic, Flavour::big}) {
        const ModuleRun run(
            tiffOf({Order::big, flavour},
                   Dir().entry(kMake, 5, 1, twoFifths).entry(272, 10, 1, twoFifths)));
        EXPECT_EQ(run.number({"Make"}), 0.4);
        EXPECT_EQ(run.number({"Model"}), 0.4);
    }
}

TEST(ByteOrder, LeavesSingleBytesAlone) {
    const ModuleRun run(
        tiffOf({Order::big, Flavour::classic},
               Dir().entry(kMake, 1, 3, {1, 2, 3}).entry(272, 2, 5, bytesOf("abcde"))));
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(1, 2, 3));
    EXPECT_EQ(run.text({"Model"}), "abcde");
}

TEST(ByteOrder, ReversesAllEightBytesOfADouble) {
    EXPECT_EQ(ModuleRun(tiffOf({Order::big, Flavour::classic},
                               Dir().entry(kMake, 12, 1,
                                           {0x40, 0x09, 0x21, 0xFB, 0x54, 0x44, 0x2D, 0x18})))
                  .number({"Make"}),
              3.141592653589793);
}

}  // namespace

}  // namespace veltrace::test
