// Codes that are reported as words.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <string>
#include <string_view>

#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

static void PrintTo(const WordTable& table, std::ostream* stream) {
    *stream << table.field;
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Small codes, extremes, and every row with its neighbours.
std::set<std::int32_t> codesAround(const WordTable& table) {
    std::set<std::int32_t> codes{std::numeric_limits<std::int32_t>::min(), -2, 32844, 65535, 65537,
                                 std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t code = -1; code <= 40; ++code) {
        codes.insert(code);
    }
    for (const WordRow& row : table.rows) {
        codes.insert({row.code - 1, row.code, row.code + 1});
    }
    return codes;
}

class WordTables : public ::testing::TestWithParam<WordTable> {
protected:
    [[nodiscard]] std::string wordIn(const TiffBuilder& tiff) const {
        const ModuleRun run(tiff.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        return run.text({GetParam().field});
    }
    [[nodiscard]] std::string firstWord() const {
        return std::string(GetParam().rows.front().word);
    }
    [[nodiscard]] std::int32_t firstCode() const { return GetParam().rows.front().code; }

    TiffBuilder file;
};

TEST_P(WordTables, HaveTheListedWordsAndOneForEveryOtherCode) {
    const WordTable& table = GetParam();
    const auto codes = codesAround(table);
    for (const std::int32_t code : codes) {
        file.addImage().signedLongs(table.tag, {code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    ASSERT_EQ(run.directories(), codes.size());
    std::size_t element = 0;
    for (const std::int32_t code : codes) {
        const auto row = std::ranges::find(table.rows, code, &WordRow::code);
        const std::string_view expected = row == table.rows.end() ? table.otherwise : row->word;
        EXPECT_EQ(run.text({table.field}, element), expected) << "code " << code;
        ++element;
    }
}

TEST_P(WordTables, LookAtTheFirstValueOnly) {
    file.image().signedLongs(GetParam().tag, {firstCode(), 2000, 2});
    EXPECT_EQ(wordIn(file), firstWord());
}

TEST_P(WordTables, CutOffFractions) {
    file.image().doubles(GetParam().tag, {firstCode() + 0.9375});
    EXPECT_EQ(wordIn(file), firstWord());
}

TEST_P(WordTables, HaveNoWordForWhatIsNoCode) {
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          4294967297.0, -4294967295.0, 1e300}) {
        TiffBuilder one;
        one.image().doubles(GetParam().tag, {value});
        EXPECT_EQ(wordIn(one), GetParam().otherwise) << value;
    }
}

TEST_P(WordTables, LeaveTextsAlone) {
    file.image().rawAscii(GetParam().tag, "2");
    EXPECT_EQ(wordIn(file), "2");
}

TEST_P(WordTables, LeaveATagWithoutValuesWithoutAWord) {
    file.image().shorts(GetParam().tag, {});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.value({GetParam().field}));
}

INSTANTIATE_TEST_SUITE_P(OfEachTag, WordTables, ::testing::ValuesIn(kWordTables),
                         [](const auto& instance) { return std::string(instance.param.field); });

TEST(Words, AreTakenFromQuotients) {
    TiffBuilder file;
    file.image().rationals(296, {{29, 10}}).signedRationals(284, {{-5, -4}});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"ResolutionUnit"}), "Inch");
    EXPECT_EQ(run.text({"PlanarConfiguration"}), "Chunky");
}

TEST(Words, ForResolutionUnits2And2Point9AreInch) {
    TiffBuilder file;
    file.image().shorts(296, {2});
    file.addImage().floats(296, {2.9F});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"ResolutionUnit"}, 0), "Inch");
    EXPECT_EQ(run.text({"ResolutionUnit"}, 1), "Inch");
}

TEST(Words, ForPredictor3IsLowerCaseUnknownAndForPlanarConfiguration3UpperCase) {
    TiffBuilder file;
    file.image().shorts(317, {3}).shorts(284, {3});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"Predictor"}), "unknown");
    EXPECT_EQ(run.text({"PlanarConfiguration"}), "Unknown");
}

TEST(Words, ForCompressions8And32946AreDeflateAndFor0Unknown) {
    TiffBuilder file;
    for (const std::uint16_t code : {std::uint16_t{8}, std::uint16_t{32946}, std::uint16_t{0}}) {
        file.addImage().shorts(259, {code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"Compression"}, 0), "Deflate");
    EXPECT_EQ(run.text({"Compression"}, 1), "Deflate");
    EXPECT_EQ(run.text({"Compression"}, 2), "unknown");
}

TEST(Words, ForPhotometricInterpretation7IsUnknown) {
    TiffBuilder file;
    file.image().shorts(262, {7});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"PhotometricInterpretation"}), "unknown");
}

TEST(Words, TruncateNegativeFractionsToZero) {
    TiffBuilder file;
    file.image().floats(262, {-0.5F});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"PhotometricInterpretation"}), "WhiteIsZero");
}

TEST(Words, AreOneRowOfCharacters) {
    TiffBuilder file;
    file.image().shorts(284, {2});
    EXPECT_THAT(ModuleRun(file.bytes()).dimensions({"PlanarConfiguration"}), ElementsAre(1, 6));
}

}  // namespace

}  // namespace veltrace::test
