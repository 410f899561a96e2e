// Signatures that the sniffers reject, and that failures of the walk are fatal.
#include <gmock/gmock.h>

#include "support/jpeg_parts.h"
#include "support/memory_file.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "support/unseekable_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

zephra::Message fatalErrorIn(const MemoryFile& file) {
    JpegTagFile reader(file.name().c_str());
    return fatalErrorOf([&] { reader.readAll(); });
}

TEST(JpegSignature, IsFatalIfUnreadable) {
    for (const Bytes& bytes : {Bytes{}, Bytes{0xFF}}) {
        const MemoryFile file(bytes);
        EXPECT_EQ(fatalErrorIn(file),
                  message("ZEPHRA:veltrace:JpegTagFile:fileSignatureReadFailure",
                          "Unable to read the first two bytes of the file. \"" + file.name() +
                              "\" is probably corrupt.\n"));
    }
}

struct SignatureCase {
    Bytes signature;
    std::string shown;
};

class WrongJpegSignature : public testing::TestWithParam<SignatureCase> {};

INSTANTIATE_TEST_SUITE_P(Bytes, WrongJpegSignature,
                         testing::Values(SignatureCase{{'A', 'B'}, "[A, B]"},
                                         SignatureCase{{0xD8, 0xFF}, "[\xD8, \xFF]"},
                                         SignatureCase{{'1', 0}, std::string("[1, \0]", 6)}));

TEST_P(WrongJpegSignature, IsFatalAndReportedInCharacters) {
    EXPECT_EQ(fatalErrorIn(MemoryFile(GetParam().signature)),
              message("ZEPHRA:veltrace:JpegTagFile:fileSignatureVerificationFailure",
                      "The first two bytes of a JPEG file should be [255 216], and the first two "
                      "bytes of this file are " +
                          GetParam().shown + ".\n"));
}

// Kept: one correct byte is enough.
TEST(JpegSignature, NeedsOneCorrectByte) {
    for (const Bytes& signature : {Bytes{0xFF, 0xD8}, Bytes{0xFF, 0}, Bytes{0, 0xD8}}) {
        EXPECT_EQ(fatalErrorIn(MemoryFile(signature)).identifier,
                  "ZEPHRA:veltrace:jpegMarkerReadFailure");
    }
}

TEST(JpegSignature, PassesWithBytes255And0AndTheDirectoryIsRead) {
    inQuietCall([] {
        const MemoryFile file(Bytes{0xFF, 0} + app1(kExif, rotatedTiff(6)));
        JpegTagFile reader(file.name().c_str());
        reader.readAll();
        EXPECT_EQ(reader.getNumIfds(), 1U);
        EXPECT_EQ(reader.offsetBase(), 12);
    });
}

TEST(UnseekableJpegFile, IsFatalWhenASegmentIsSkipped) {
    const UnseekableFile file;
    file.feed(kStartOfImage + segment(0xE0, {1, 2, 3}) + segment(0xDB, {}));
    JpegTagFile reader(file.name().c_str());
    EXPECT_EQ(fatalErrorOf([&] { reader.readAll(); }),
              message("ZEPHRA:veltrace:badJpegSectionSeek",
                      "Could not read past one of the JPEG data sections, the image file \"" +
                          file.name() + "\" may be corrupt."));
}

struct FatalCase {
    const char* identifier;
    Bytes file;
};

class WalkFailure : public testing::TestWithParam<FatalCase> {};

INSTANTIATE_TEST_SUITE_P(
    Failures, WalkFailure,
    testing::Values(
        FatalCase{"ZEPHRA:veltrace:jpegMarkerReadFailure", {0xFF, 0xD8, 0xFF}},
        FatalCase{"ZEPHRA:veltrace:invalidJpegMarker", {0xFF, 0xD8, 0xFE, 0xE1, 0, 8}},
        FatalCase{"ZEPHRA:veltrace:highOrderByteSectionSizeReadFailure", {0xFF, 0xD8, 0xFF, 0xE1}},
        FatalCase{"ZEPHRA:veltrace:lowOrderByteSectionSizeReadFailure",
                  {0xFF, 0xD8, 0xFF, 0xE1, 0}},
        FatalCase{"ZEPHRA:veltrace:badJpegExifHeaderRead", {0xFF, 0xD8, 0xFF, 0xE1, 0, 8, 'E'}}));

TEST_P(WalkFailure, IsFatalAndLeavesNoDirectories) {
    const MemoryFile file(GetParam().file);
    JpegTagFile reader(file.name().c_str());
    EXPECT_EQ(fatalErrorOf([&] { reader.readAll(); }).identifier, GetParam().identifier);
    EXPECT_EQ(reader.getNumIfds(), 0U);
}

}  // namespace

}  // namespace veltrace::test
