// What each call of the system about a file costs when it fails, for one file of each format.
#include <algorithm>
#include <gmock/gmock.h>

#include "faults/fault_messages.h"
#include "faults/faulty_call.h"
#include "support/jpeg_parts.h"
#include "support/messages.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using testing::ElementsAreArray;

/// What becomes of a call.
struct Outcome {
    std::vector<zephra::Message> messages = {};  ///< "%n" is the file's name
    std::optional<std::size_t> directories;      ///< of the value; nothing after an error
    bool leavesName = false;
};

struct Case {
    Request kind;
    std::uint64_t number;  ///< among the requests of this kind, from 1
    Outcome outcome;
    /// Where a read that comes one byte short costs something else: what is read ahead is more than
    /// what is needed.
    std::optional<Outcome> whenShort = {};
};

Outcome isAsUsual(std::size_t directories) {
    return {.directories = directories};
}

Outcome fails(const zephra::Message& error) {
    return {.messages = {error}, .directories = std::nullopt};
}

Outcome fails(const std::string& identifier, const std::string& text) {
    return fails(message("ZEPHRA:veltrace:" + identifier, text));
}

Outcome leavingName(Outcome outcome) {
    outcome.leavesName = true;
    return outcome;
}

Outcome isUnconverted() {
    return {.messages = {fatalErrorUnconverted()}, .directories = std::nullopt};
}

Outcome warns(const zephra::Message& warning, std::size_t directories) {
    return {.messages = {warning}, .directories = directories};
}

Outcome warns(const std::string& identifier, const std::string& text, std::size_t directories) {
    return warns(message("ZEPHRA:veltrace:" + identifier, text), directories);
}

std::vector<zephra::Message> named(std::vector<zephra::Message> messages, const std::string& name) {
    for (zephra::Message& message : messages) {
        if (const std::size_t at = message.text.find("%n"); at != std::string::npos) {
            message.text.replace(at, 2, name);
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

/// `kinds` are those of which every request must have a case.
void expectOutcomes(const Bytes& file, const std::vector<Case>& cases,
                    const std::vector<Request>& kinds = {std::begin(kEachFileRequest),
                                                         std::end(kEachFileRequest)}) {
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
                test.whenShort.value_or(test.outcome));
        }
    }
    for (const Request kind : kinds) {
        const std::uint64_t asked = FaultyCall(prepared, {.kinds = kind}).asked();
        const auto ofKind = [kind](const Case& test) { return test.kind == kind; };
        EXPECT_EQ(static_cast<std::uint64_t>(std::ranges::count_if(cases, ofKind)), asked)
            << "requests of kind " << static_cast<unsigned>(kind) << " without a case";
    }
}

const std::string kCorrupt = "the image may be corrupt.";
const std::string kFirstSeek =
    "Could not seek to position specified by TIFF header offset pointer,  the image may be "
    "corrupt.\n";
const std::string kLinkSeek =
    "Could not seek to the next image file directory pointer, the image file \"%n\" is probably "
    "corrupt.";

std::string linkUnreadAt(std::uint64_t position) {
    return "Unable to read the offset value at byte position " + std::to_string(position) +
           " to a following image file directory, the metadata in \"%n\" may be corrupt.";
}

/// What comes before the reader of a classic TIFF file of two directories reads, besides `others`.
std::vector<Case> withOpenings(const std::vector<Case>& others) {
    using enum Request;
    std::vector<Case> cases = {
        {open, 1, leavingName(fails(unopenableFile("%n")))},
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
    };
    cases.insert(cases.end(), others.begin(), others.end());
    return cases;
}

// All of it is read ahead at once.
TEST(FileFaultOutcome, OfASmallClassicTiff) {
    using enum Request;
    TiffBuilder file;
    file.image().ascii(305, "the kiln").nest(34665, Dir().shorts(37383, {5}));
    file.addImage().shorts(274, {6});
    expectOutcomes(
        file.bytes(),
        withOpenings({
            // What was not read ahead is read when it is needed.
            {read, 3, fails(unreadableByteOrder("%n")), isAsUsual(2)},
            // The header is taken to be at -1: 512 entries at 7, of which the file has few.
            {tell, 1, fails(unreadableTable("IFD table #0"))},
        }));
}

// The first directory is at 8 and has three entries: its link is at 46, its description at 50 and
// larger than what is read ahead, its text at 40,052. The second directory is at 40,062: its link
// is at 40,088, its description at 40,092. The Exif directory is at 60,094.
TEST(FileFaultOutcome, OfAClassicTiffWhosePartsAreFarApart) {
    using enum Request;
    TiffBuilder file;
    TiffDirectory& exif = file.child().shorts(37383, {5});
    file.image().ascii(270, std::string(40'000, 'd')).ascii(305, "the kiln").sub(34665, exif);
    const std::uint64_t second =
        file.positionOf(file.addImage().ascii(270, std::string(20'000, 'd')).shorts(274, {6}));
    ASSERT_EQ(second, 40'062U);
    ASSERT_EQ(file.positionOf(exif), 60'094U);
    const auto unread = [](const std::string& name, std::uint64_t position) {
        return warns(unreadableValue(name, position), 2);
    };
    expectOutcomes(
        file.bytes(),
        withOpenings({
            {read, 3, fails(unreadableByteOrder("%n")), isAsUsual(2)},
            {read, 4, unread("ImageDescription", 50)},
            {read, 5, unread("Software", 40052), isAsUsual(2)},
            {read, 6, warns(unreadableCount("%n"), 2), isAsUsual(2)},
            {read, 7, warns("TagFile:nextIfdOffsetReadError", linkUnreadAt(46), 1), isAsUsual(2)},
            // A chain that throws is lost as a whole.
            {read, 8, fails(unreadableCount("%n")), isAsUsual(2)},
            {read, 9, unread("ImageDescription", 40092), isAsUsual(2)},
            {read, 10, warns("TagFile:nextIfdOffsetReadError", linkUnreadAt(40'088), 2),
             isAsUsual(2)},
            {seek, 1,
             warns("TiffTag:badTagDataOffsetSeek",
                   "Could not seek to data for tag with ID 305, " + kCorrupt, 2)},
            {seek, 2,
             warns("TiffTag:badSubIfdSeek", "Could not seek to start of Exif sub IFD\n", 2)},
            {seek, 3, isAsUsual(2)},  // back from it
            {seek, 4, warns("IFDSet:badNextIfdPointer", kLinkSeek, 1)},
            {seek, 5,
             warns("badNextIfdPointer",
                   "Could not seek to the next image file directory, some metadata in the image "
                   "file \"%n\" might not have been retrieved.",
                   1)},
            {seek, 6, warns("IFDSet:badNextIfdPointer", kLinkSeek, 2)},
            // A header at -1 makes of this file what no text states in advance.
        }),
        {open, status, close, read, seek});
}

// The first directory is behind what is read ahead of the header.
TEST(FileFaultOutcome, OfAClassicTiffWhoseDirectoryIsFarFromItsHeader) {
    using enum Request;
    TiffBuilder file;
    file.firstOffset(20'000).image().shorts(274, {6});
    const Bytes small = file.bytes();
    Bytes bytes(20'000, 0);
    std::copy_n(small.begin(), 8, bytes.begin());
    bytes.insert(bytes.end(), small.begin() + 8, small.end());
    expectOutcomes(bytes,
                   {
                       {seek, 1, fails("badTiffHeaderIfdOffset", kFirstSeek)},
                   },
                   {seek});
}

TEST(FileFaultOutcome, OfBigTiff) {
    using enum Request;
    TiffBuilder file(Order::little, Flavour::big);
    file.image().shorts(274, {6});
    const Outcome notRecognised =
        leavingName(fails("unhandledFileFormat", "File format not recognized"));
    expectOutcomes(file.bytes(), {
                                     {open, 1, leavingName(fails(unopenableFile("%n")))},
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
                                     {read, 4, fails(unreadableByteOrder("%n")), isAsUsual(1)},
                                     // 256 entries at 15, of which the file has few.
                                     {tell, 1, fails(unreadableTable("IFD table #0"))},
                                 });
}

// The segment before the one that matters is larger than what is read ahead.
TEST(FileFaultOutcome, OfJpeg) {
    using enum Request;
    const Bytes file = kStartOfImage + segment(0xE0, Bytes(30'000)) + app1(kExif, rotatedTiff(6)) +
                       segment(0xDB, {0});
    const std::string corrupt = "the image file \"%n\" may be corrupt.";
    const Outcome unskipped = fails(
        "badJpegSectionSeek", "Could not read past one of the JPEG data sections, " + corrupt);
    expectOutcomes(
        file,
        {
            {open, 1, leavingName(fails(unopenableFile("%n")))},
            {open, 2, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {open, 3, leavingName(isUnconverted())},
            {status, 1, leavingName(isUnconverted())},
            {close, 1, isAsUsual(1)},
            {close, 2, isAsUsual(1)},
            {close, 3, isUnconverted()},
            {read, 1, leavingName(fails("unhandledFileFormat", "File format not recognized"))},
            {read, 2,
             fails("JpegTagFile:fileSignatureReadFailure",
                   "Unable to read the first two bytes of the file. \"%n\" is probably corrupt.\n"),
             isAsUsual(1)},
            {read, 3, fails(unreadableMarker("%n")), isAsUsual(1)},
            {seek, 1, unskipped},
            {tell, 1, isAsUsual(1)},  // to know how much to read ahead
        });
}

}  // namespace

}  // namespace veltrace::test
