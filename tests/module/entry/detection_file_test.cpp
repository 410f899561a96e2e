// Which reader a file gets. Every file here ends too early for its reader, whose message
// identifies it.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

const zephra::Message kUnhandled =
    message("ZEPHRA:veltrace:unhandledFileFormat", "File format not recognized");

struct DetectionCase {
    const char* name;
    Bytes file;
    const char* identifier;
};

class RecognizedFile : public testing::TestWithParam<DetectionCase> {};

TEST_P(RecognizedFile, GoesToItsReader) {
    const ModuleRun run(GetParam().file);
    ASSERT_EQ(run.messages().size(), 1U);
    EXPECT_EQ(run.messages().front().identifier, GetParam().identifier);
}

constexpr const char* kJpeg = "ZEPHRA:veltrace:jpegMarkerReadFailure";
constexpr const char* kClassic = "ZEPHRA:veltrace:badTiffHeaderOffsetRead";
constexpr const char* kBig = "ZEPHRA:veltrace:bigTiff:badOffsetSizeRead";

INSTANTIATE_TEST_SUITE_P(
    Signatures, RecognizedFile,
    testing::Values(DetectionCase{"JpegOfTwoBytes", {0xFF, 0xD8}, kJpeg},
                    DetectionCase{"JpegOfThreeBytes", {0xFF, 0xD8, 0xFF}, kJpeg},
                    DetectionCase{"LittleEndianTiff", {'I', 'I', 0x2A, 0x00}, kClassic},
                    DetectionCase{"BigEndianTiff", {'M', 'M', 0x00, 0x2A}, kClassic},
                    DetectionCase{"LittleEndianBigTiff", {'I', 'I', 0x2B, 0x00}, kBig},
                    DetectionCase{"BigEndianBigTiff", {'M', 'M', 0x2B, 0x00}, kBig}),
    [](const auto& test) { return test.param.name; });

struct UnhandledCase {
    const char* name;
    Bytes file;
};

class UnhandledFile : public testing::TestWithParam<UnhandledCase> {};

TEST_P(UnhandledFile, IsReportedAndItsNameLeftBehind) {
    const ModuleRun run(GetParam().file);
    EXPECT_THAT(run.messages(), ElementsAre(kUnhandled));
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers().blocks, 1U);
    EXPECT_EQ(run.leftovers().arrays, 0U);
}

// Kept: published big-endian BigTIFF (MM 00 2B) is not recognized.
INSTANTIATE_TEST_SUITE_P(
    Files, UnhandledFile,
    testing::Values(
        UnhandledCase{"Empty", {}}, UnhandledCase{"OneByte", {0xFF}},
        UnhandledCase{"OneByteOfTiff", {'I'}}, UnhandledCase{"ThreeBytesOfTiff", {'I', 'I', 0x2A}},
        UnhandledCase{"ThreeBytesOfBigTiff", {'M', 'M', 0x2B}},
        UnhandledCase{"PublishedBigEndianBigTiff",
                      {'M', 'M', 0x00, 0x2B, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16}},
        UnhandledCase{"LittleEndianMarkWithBigEndianVersion", {'I', 'I', 0x00, 0x2A, 0, 0, 0, 8}},
        UnhandledCase{"BigEndianMarkWithLittleEndianVersion", {'M', 'M', 0x2A, 0x00, 0, 0, 0, 8}},
        UnhandledCase{"MixedMark", {'I', 'M', 0x2A, 0x00, 0, 0, 0, 8}},
        UnhandledCase{"HalfAJpegSignature", {0xFF, 0x00, 0xFF, 0xDB}},
        UnhandledCase{"OtherHalfOfAJpegSignature", {0x00, 0xD8, 0xFF, 0xDB}},
        UnhandledCase{"Text", bytesOf("kiln log\n")}),
    [](const auto& test) { return test.param.name; });

// Version 2B 00, one directory at 16 with one entry: Orientation (0112), SHORT, 6 inside the entry.
TEST(Detection, FileThatBegins4D4D2B00IsReadAsBigEndianBigTiff) {
    const ModuleRun run = quietRun(Bytes{
        'M', 'M', 0x2B, 0x00, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0x12,
        0,   3,   0,    0,    0, 1, 0, 0, 0, 0, 0, 6, 0, 0, 0, 0,  0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(run.text({"Format"}), "tif");
    EXPECT_EQ(run.text({"ByteOrder"}), "big-endian");
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

TEST(Detection, DirectoryOpensButHasNoBytes) {
    const ModuleRun run(std::vector<zephra::Argument>{"/"});
    EXPECT_THAT(run.messages(), ElementsAre(kUnhandled));
}

}  // namespace

}  // namespace veltrace::test
