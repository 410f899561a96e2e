// Codes that are reported as words.
#include <set>

#include "support/file_test.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

static void PrintTo(const WordTable& table, std::ostream* stream) {
    *stream << table.field;
}

namespace {

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
        const ModuleRun run = quietRun(tiff.bytes());
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
    const ModuleRun run = quietRun(file.bytes());
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
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_FALSE(run.value({GetParam().field}));
}

INSTANTIATE_TEST_SUITE_P(OfEachTag, WordTables, ::testing::ValuesIn(kWordTables),
                         [](const auto& instance) { return std::string(instance.param.field); });

TEST(Words, AreThoseOfTheTruncatedNumberInItsOwnCase) {
    expectShown({
        {Dir().rationals(296, {{29, 10}}), "ResolutionUnit", "'Inch'"},
        {Dir().shorts(296, {2}), "ResolutionUnit", "'Inch'"},
        {Dir().floats(296, {2.9F}), "ResolutionUnit", "'Inch'"},
        {Dir().signedRationals(284, {{-5, -4}}), "PlanarConfiguration", "'Chunky'"},
        {Dir().shorts(284, {3}), "PlanarConfiguration", "'Unknown'"},
        {Dir().shorts(317, {3}), "Predictor", "'unknown'"},
        {Dir().shorts(259, {8}), "Compression", "'Deflate'"},
        {Dir().shorts(259, {32946}), "Compression", "'Deflate'"},
        {Dir().shorts(259, {0}), "Compression", "'unknown'"},
        {Dir().shorts(262, {7}), "PhotometricInterpretation", "'unknown'"},
        {Dir().floats(262, {-0.5F}), "PhotometricInterpretation", "'WhiteIsZero'"},
    });
}

}  // namespace

}  // namespace veltrace::test
