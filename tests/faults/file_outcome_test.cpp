// What each call of the system about a file costs when it fails, for one file of each format.
#include <algorithm>
#include <gmock/gmock.h>

#include "faults/fault_messages.h"
#include "faults/faulty_call.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "tagfile/jpeg_parts.h"

namespace veltrace::test {

namespace {

using testing::ElementsAreArray;

/// What becomes of a call.
struct Outcome {
    std::vector<zephra::Message> messages = {};  ///< "%q" stands for the file's name in quotes
    std::optional<std::size_t> directories;      ///< of the value; nothing after an error
    bool leavesName = false;
};

struct Case {
    Request kind;
    std::uint64_t number;  ///< among the requests of this kind, from 1
    Outcome outcome;
};

Outcome isAsUsual(std::size_t directories) {
    return {.directories = directories};
}

Outcome fails(const std::string& identifier, const std::string& text) {
    return {.messages = {{"ZEPHRA:veltrace:" + identifier, text}}, .directories = std::nullopt};
}

Outcome leavingName(Outcome outcome) {
    outcome.leavesName = true;
    return outcome;
}

Outcome isUnconverted() {
    return {.messages = {fatalErrorUnconverted()}, .directories = std::nullopt};
}

Outcome warns(const std::string& identifier, const std::string& text, std::size_t directories) {
    return {.messages = {{"ZEPHRA:veltrace:" + identifier, text}}, .directories = directories};
}

std::vector<zephra::Message> named(std::vector<zephra::Message> messages, const std::string& name) {
    for (zephra::Message& message : messages) {
        if (const std::size_t at = message.text.find("%q"); at != std::string::npos) {
            message.text.replace(at, 2, '"' + name + '"');
        }
    }
    return messages;
}

void expectOutcome(const Prepared& prepared, const Fault& fault, const Outcome& expected) {
    FaultyCall call(prepared, fault);
    ASSERT_EQ(call.refused(), 1U);
    ASSERT_TRUE(call.result());
    EXPECT_THAT(call.messages(), ElementsAreArray(named(expected.messages, prepared.fileName())));
    EXPECT_EQ(static_cast<bool>(call.result()->output()), expected.directories.has_value());
    EXPECT_EQ(call.result()->output().size(), expected.directories.value_or(0));
    EXPECT_EQ(call.result()->leftovers().blocks, expected.leavesName ? 1U : 0U);
    EXPECT_FALSE(call.leftReader());
    EXPECT_EQ(call.cleanUp(), "");
}

void expectOutcomes(const Bytes& file, const std::vector<Case>& cases) {
    const Prepared prepared({.name = "", .file = file});
    for (const Case& test : cases) {
        SCOPED_TRACE("request " + std::to_string(test.number) + " of kind " +
                     std::to_string(static_cast<unsigned>(test.kind)));
        expectOutcome(prepared, {.kinds = test.kind, .first = test.number}, test.outcome);
        if (test.kind == Request::read) {
            SCOPED_TRACE("one byte short");
            expectOutcome(
                prepared,
                {.kinds = Request::read, .first = test.number, .refusal = Refusal::comesShort},
                test.outcome);
        }
    }
    for (const Request kind : kEachFileRequest) {
        const std::uint64_t asked = FaultyCall(prepared, {.kinds = kind}).asked();
        const auto ofKind = [kind](const Case& test) { return test.kind == kind; };
        EXPECT_EQ(static_cast<std::uint64_t>(std::ranges::count_if(cases, ofKind)), asked)
            << "requests of kind " << static_cast<unsigned>(kind) << " without a case";
    }
}

const std::string kCorrupt = "the image may be corrupt.";
const std::string kCount =
    "Unable to read the number of entries in one of the image file directories, the metadata in "
    "%q may be corrupt.";
const std::string kTable =
    "Could not read IFD table #0 into memory, some of the metadata in the image file may be "
    "corrupt.\n";
const std::string kFirstSeek =
    "Could not seek to position specified by TIFF header offset pointer,  the image may be "
    "corrupt.\n";
const std::string kVersion = "Could not read TIFF header version number, the image may be corrupt.";
const std::string kFirst =
    "Could not read the location of the first TIFF tag table, the image may be corrupt.";
const std::string kByteOrder =
    "Could not read TIFF header byte order the image file %q may be corrupt.";
const std::string kLinkSeek =
    "Could not seek to the next image file directory pointer, the image file %q is probably "
    "corrupt.";

const std::string kLinkOutside =
    "The pointer to a secondary IFD exceeds the size of the image file %q and therefore cannot be "
    "valid.  Some metadata might not be returned. ";

std::string linkUnreadAt(std::uint64_t position) {
    return "Unable to read the offset value at byte position " + std::to_string(position) +
           " to a following image file directory, the metadata in %q may be corrupt.";
}

// The first directory is at 8 and has two entries: its link is at 34, its text at 38.
TEST(FileFaultOutcome, OfClassicTiff) {
    using enum Request;
    TiffBuilder file;
    file.image().ascii(305, "the kiln").sub(34665, file.child().shorts(37383, {5}));
    const std::uint64_t second = file.positionOf(file.addImage().shorts(274, {6}));
    expectOutcomes(
        file.bytes(),
        {
            {open, 1, leavingName(fails("badFilename", "Could not open file %q."))},
            {open, 2, isAsUsual(2)},  // the test for JPEG
            {open, 3, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {open, 4, leavingName(isUnconverted())},
            {status, 1, leavingName(isUnconverted())},
            {close, 1, isAsUsual(2)},
            {close, 2, isAsUsual(2)},
            {close, 3, isAsUsual(2)},
            {close, 4, isUnconverted()},
            {read, 1, isAsUsual(2)},
            {read, 2, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {read, 3, fails("tiffHeaderEndianReadFailure", kByteOrder)},
            {read, 4, fails("badTiffHeaderVersionRead", kVersion)},
            {read, 5, fails("badTiffHeaderOffsetRead", kFirst)},
            {read, 6, fails("numIfdEntriesReadError", kCount)},
            {read, 7, fails("badRawIfdRead", kTable)},
            {read, 8,
             warns("badTiffTagOffsetDataRead",
                   "Unable to read TIFF tag \"Software\" value from byte location 38.", 2)},
            {read, 9, warns("numIfdEntriesReadError", kCount, 2)},
            {read, 10,
             warns("badRawIfdRead",
                   "Could not read the Exif sub IFD table into memory, some of the metadata in the "
                   "image file may be corrupt.\n",
                   2)},
            {read, 11, warns("TagFile:nextIfdOffsetReadError", linkUnreadAt(34), 1)},
            // A chain that throws is lost as a whole.
            {read, 12, fails("numIfdEntriesReadError", kCount)},
            {read, 13, fails("badRawIfdRead", kTable)},
            {read, 14, warns("TagFile:nextIfdOffsetReadError", linkUnreadAt(second + 2 + 12), 2)},
            {seek, 1, fails("badTiffHeaderIfdOffset", kFirstSeek)},
            {seek, 2,
             warns("TiffTag:badTagDataOffsetSeek",
                   "Could not seek to data for tag with ID 305, " + kCorrupt, 2)},
            {seek, 3,
             warns("TiffTag:badSubIfdSeek", "Could not seek to start of Exif sub IFD\n", 2)},
            {seek, 4, isAsUsual(2)},  // back from it
            {seek, 5, warns("IFDSet:badNextIfdPointer", kLinkSeek, 1)},
            {seek, 6,
             warns("badNextIfdPointer",
                   "Could not seek to the next image file directory, some metadata in the image "
                   "file %q might not have been retrieved.",
                   1)},
            {seek, 7, warns("IFDSet:badNextIfdPointer", kLinkSeek, 2)},
            // The header is taken to be at -1: 512 entries at 7, of which the file has few.
            {tell, 1, fails("badRawIfdRead", kTable)},
            // The first directory is: its link at 25, where 0, 1, 0, 0 stands, 256.
            {tell, 2, warns("badNextIfdPointer", kLinkOutside, 1)},
            {tell, 3, isAsUsual(2)},  // for messages alone
            {tell, 4, isAsUsual(2)},  // where to go back to, which nobody needs
            {tell, 5, isAsUsual(2)},
            {tell, 6, isAsUsual(2)},
            {tell, 7, isAsUsual(2)},
            // The second directory is: its link at 13, where 0, 9, 0, 0 stands, 2304.
            {tell, 8, warns("badNextIfdPointer", kLinkOutside, 2)},
            {tell, 9, isAsUsual(2)},
            {tell, 10, isAsUsual(2)},
        });
}

TEST(FileFaultOutcome, OfBigTiff) {
    using enum Request;
    TiffBuilder file(Order::little, Flavour::big);
    file.image().shorts(274, {6});
    const Outcome notRecognised =
        leavingName(fails("unhandledFileFormat", "File format not recognized"));
    const std::string text = "Could not read offset size in the TIFF header, " + kCorrupt;
    const std::string padding = "Could not read Big TIFF header padding, " + kCorrupt;
    expectOutcomes(
        file.bytes(),
        {
            {open, 1, leavingName(fails("badFilename", "Could not open file %q."))},
            {open, 2, isAsUsual(1)},
            {open, 3, isAsUsual(1)},
            {open, 4, notRecognised},
            {open, 5, leavingName(isUnconverted())},
            {status, 1, leavingName(isUnconverted())},
            {close, 1, isAsUsual(1)},
            {close, 2, isAsUsual(1)},
            {close, 3, isAsUsual(1)},
            {close, 4, isAsUsual(1)},
            {close, 5, isUnconverted()},
            {read, 1, isAsUsual(1)},
            {read, 2, isAsUsual(1)},
            {read, 3, notRecognised},
            {read, 4, fails("tiffHeaderEndianReadFailure", kByteOrder)},
            {read, 5, fails("bigTiff:badTiffHeaderVersionRead", kVersion)},
            {read, 6, fails("bigTiff:badOffsetSizeRead", text)},
            {read, 7, fails("bigTiff:badOffsetSizeRead", padding)},
            {read, 8, fails("bigTiff:badTiffHeaderOffsetRead", kFirst)},
            {read, 9, fails("numIfdEntriesReadError", kCount)},
            {read, 10, fails("badRawIfdRead", kTable)},
            // The directory is at 16, its link behind a count of 8 bytes and one entry of 20.
            {read, 11, warns("TagFile:nextIfdOffsetReadError", linkUnreadAt(16 + 8 + 20), 1)},
            {seek, 1, fails("bigTiff:badTiffHeaderIfdOffset", kFirstSeek)},
            {seek, 2, warns("IFDSet:badNextIfdPointer", kLinkSeek, 1)},
            // 256 entries at 15, of which the file has few.
            {tell, 1, fails("badRawIfdRead", kTable)},
            // The link at 27, where the count and the value of the entry stand.
            {tell, 2, warns("badNextIfdPointer", kLinkOutside, 1)},
            {tell, 3, isAsUsual(1)},
            {tell, 4, isAsUsual(1)},
        });
}

TEST(FileFaultOutcome, OfJpeg) {
    using enum Request;
    const Bytes file =
        kStartOfImage + segment(0xE0, Bytes(14)) + app1(kExif, rotatedTiff(6)) + segment(0xDB, {0});
    const std::string corrupt = "the image file %q may be corrupt.";
    const std::string marker = "Could not read one of the JPEG markers, " + corrupt;
    const std::string high = "Could not read the high order byte of the JPEG section size, ";
    const std::string low = "Could not read the low order byte of the JPEG section size, ";
    expectOutcomes(
        file,
        {
            {open, 1, leavingName(fails("badFilename", "Could not open file %q."))},
            {open, 2, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {open, 3, leavingName(isUnconverted())},
            {status, 1, leavingName(isUnconverted())},
            {close, 1, isAsUsual(1)},
            {close, 2, isAsUsual(1)},
            {close, 3, isUnconverted()},
            {read, 1, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {read, 2,
             fails("JpegTagFile:fileSignatureReadFailure",
                   "Unable to read the first two bytes of the file. %q is probably corrupt.\n")},
            {read, 3, fails("jpegMarkerReadFailure", marker)},
            {read, 4, fails("highOrderByteSectionSizeReadFailure", high + corrupt)},
            {read, 5, fails("lowOrderByteSectionSizeReadFailure", low + corrupt)},
            {read, 6, fails("jpegMarkerReadFailure", marker)},
            {read, 7, fails("highOrderByteSectionSizeReadFailure", high + corrupt)},
            {read, 8, fails("lowOrderByteSectionSizeReadFailure", low + corrupt)},
            {read, 9,
             fails("badJpegExifHeaderRead", "Unable to read the JPEG Exif header, " + corrupt)},
            {read, 10, fails("tiffHeaderEndianReadFailure", kByteOrder)},
            {read, 11, fails("badTiffHeaderVersionRead", kVersion)},
            {read, 12, fails("badTiffHeaderOffsetRead", kFirst)},
            {read, 13, fails("numIfdEntriesReadError", kCount)},
            {read, 14, fails("badRawIfdRead", kTable)},
            {seek, 1,
             fails("badJpegSectionSeek",
                   "Could not read past one of the JPEG data sections, " + corrupt)},
            {seek, 2, fails("badTiffHeaderIfdOffset", kFirstSeek)},
            // The header is taken to be at -1: a directory at 7, in the zeroes of the first
            // segment.
            {tell, 1,
             fails("zeroLengthIfdTable",
                   "The image file directory at byte position 7 has zero entries and is being "
                   "ignored.")},
            {tell, 2, isAsUsual(1)},
            {tell, 3, isAsUsual(1)},
        });
}

}  // namespace

}  // namespace veltrace::test
