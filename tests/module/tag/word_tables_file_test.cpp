// Codes that are reported as words.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct WordTableRows {
    std::uint16_t tag;
    std::string_view field;
    std::map<std::int32_t, std::string> words;
    std::string fallback;
};

const WordTableRows kTables[] = {
    {259,
     "Compression",
     {{1, "Uncompressed"},
      {2, "CCITT 1D"},
      {3, "Group 3 Fax"},
      {4, "Group 4 Fax"},
      {5, "LZW"},
      {6, "OJPEG"},
      {7, "JPEG"},
      {8, "Deflate"},
      {32766, "Next"},
      {32771, "CCITT RLEW"},
      {32773, "PackBits"},
      {32809, "ThunderScan RLE"},
      {32895, "IT8 CT with padding"},
      {32896, "IT8 Linework RLE"},
      {32897, "IT8 Monochrome Picture"},
      {32898, "IT8 Binary Line Art"},
      {32908, "Pixar companded 10bit LZW"},
      {32909, "Pixar companded 11bit ZIP"},
      {32946, "Deflate"},
      {32947, "DCS"},
      {34661, "ISO JBIG"},
      {34676, "SGI Log Luminance RLE"},
      {34677, "SGI Log 24-bit Packed"},
      {34712, "JPEG2000"}},
     "unknown"},
    {262,
     "PhotometricInterpretation",
     {{0, "WhiteIsZero"},
      {1, "BlackIsZero"},
      {2, "RGB"},
      {3, "RGB Palette"},
      {4, "Transparency Mask"},
      {5, "CMYK"},
      {6, "YCbCr"},
      {8, "CIELab"},
      {9, "ICCLab"},
      {10, "ITULab"},
      {32803, "CFA"},
      {32845, "LogLuv"},
      {34892, "LinearRaw"}},
     "unknown"},
    {284, "PlanarConfiguration", {{1, "Chunky"}, {2, "Planar"}}, "Unknown"},
    {296, "ResolutionUnit", {{1, "None"}, {2, "Inch"}, {3, "Centimeter"}}, "Unknown"},
    {317, "Predictor", {{1, "None"}, {2, "Horizontal differencing"}}, "unknown"},
    {332, "InkSet", {{1, "CMYK"}, {2, "not CMYK"}}, "unknown"},
    {512,
     "JPEGProc",
     {{1, "Baseline sequential process"}, {14, "Lossless process with Huffman coding"}},
     "Unknown"},
    {531, "YCbCrPositioning", {{1, "Centered"}, {2, "Co-sited"}}, "Unknown"},
};

void PrintTo(const WordTableRows& table, std::ostream* stream) {
    *stream << table.field;
}

// Small codes, extremes, and every row with its neighbours.
std::set<std::int32_t> codesAround(const WordTableRows& table) {
    std::set<std::int32_t> codes{std::numeric_limits<std::int32_t>::min(), -2, 32844, 65535, 65537,
                                 std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t code = -1; code <= 40; ++code) {
        codes.insert(code);
    }
    for (const auto& [code, word] : table.words) {
        codes.insert({code - 1, code, code + 1});
    }
    return codes;
}

class WordTables : public ::testing::TestWithParam<WordTableRows> {
protected:
    [[nodiscard]] std::string wordIn(const TiffBuilder& tiff) const {
        const ModuleRun run(tiff.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        return run.text({GetParam().field});
    }
    [[nodiscard]] std::string firstWord() const { return GetParam().words.begin()->second; }
    [[nodiscard]] std::int32_t firstCode() const { return GetParam().words.begin()->first; }

    TiffBuilder file;
};

TEST_P(WordTables, HaveTheListedWordsAndOneForEveryOtherCode) {
    const WordTableRows& table = GetParam();
    const auto codes = codesAround(table);
    for (const std::int32_t code : codes) {
        file.addImage().signedLongs(table.tag, {code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    ASSERT_EQ(run.directories(), codes.size());
    std::size_t element = 0;
    for (const std::int32_t code : codes) {
        const auto row = table.words.find(code);
        const std::string& expected = row == table.words.end() ? table.fallback : row->second;
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
        EXPECT_EQ(wordIn(one), GetParam().fallback) << value;
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

INSTANTIATE_TEST_SUITE_P(OfEachTag, WordTables, ::testing::ValuesIn(kTables),
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
