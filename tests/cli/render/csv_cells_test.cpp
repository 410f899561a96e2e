#include "render/csv_cells.h"

#include <gmock/gmock.h>

#include "render/renderer.h"

using namespace std::string_literals;
using testing::ElementsAre;
using testing::Optional;

namespace veltrace::cli {
namespace {

constexpr std::size_t kPlenty = 1000;

TEST(CsvCells, ArePackedAsAJsonArrayOfStrings) {
    EXPECT_EQ(packedCells({"1", "a\"b\\", ""}, kPlenty), R"(["1","a\"b\\",""])");
    EXPECT_EQ(packedCells({}, kPlenty), "[]");
}

TEST(CsvCells, TooManyBytesAreRefused) {
    EXPECT_EQ(packedCells({"abc"}, 7), R"(["abc"])");
    EXPECT_THROW((void)packedCells({"abc"}, 6), OutputTooLarge);
}

TEST(CsvCells, AreUnpackedAsTheyWere) {
    EXPECT_THAT(unpackedCells(R"(["1","a\"b\\","\u00e9"])", 3),
                Optional(ElementsAre("1", "a\"b\\", "\u00e9")));
    EXPECT_THAT(unpackedCells(" [ ] ", 0), Optional(ElementsAre()));
}

TEST(CsvCells, AnotherNumberOfCellsIsRefused) {
    EXPECT_EQ(unpackedCells(R"(["1"])", 2), std::nullopt);
    EXPECT_EQ(unpackedCells(R"(["1","2","3"])", 2), std::nullopt);
}

TEST(CsvCells, AnythingButOneListOfTextsIsRefused) {
    for (const char* const packed :
         {"", "\"1\"", "1", "null", "{}", "[1]", "[null]", "[true]", "[[]]", "[[\"1\"]]", "[{}]",
          R"({"1":"2"})", R"(["1")", R"(["1"]])", R"(["1"]["2"])", R"(["1",])", R"(["1"]x)"}) {
        EXPECT_EQ(unpackedCells(packed, 1), std::nullopt) << packed;
    }
    EXPECT_EQ(unpackedCells("[\"1\"]\0x"s, 1), std::nullopt);
}

TEST(CsvCells, TextsThatAreNotPrintableAreRefused) {
    for (const char* const packed :
         {"[\"a\nb\"]", R"(["a\nb"])", R"(["\u0000"])", R"(["\u001b"])", "[\"\x7f\"]",
          R"(["\u0085"])", "[\"\u2028\"]", R"(["\u202e"])", "[\"\xff\"]", R"(["\ud800"])"}) {
        EXPECT_EQ(unpackedCells(packed, 1), std::nullopt) << testing::PrintToString(packed);
    }
}

TEST(CsvCells, DeepListsAreRefusedWithoutFollowingThem) {
    EXPECT_EQ(unpackedCells(std::string(10'000'000, '['), 1), std::nullopt);
}

}  // namespace
}  // namespace veltrace::cli
