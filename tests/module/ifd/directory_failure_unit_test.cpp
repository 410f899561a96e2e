// What a directory throws. The class of the error decides if the enclosing read goes on.
#include <gtest/gtest.h>
#include <sstream>

#include "support/messages.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

constexpr IfdId kImpossible = static_cast<IfdId>(7);

TiffBuilder rotatedImage() {
    TiffBuilder file;
    file.image().shorts(274, {6});
    return file;
}

TEST(UnreadableCount, IsFatalInAnImageDirectory) {
    OpenedTiff<> file(TiffBuilder().firstOffset(8));
    EXPECT_EQ(fatalErrorOf([&] { file.readDirectory(); }), unreadableCount(file.name()));
}

TEST(UnreadableCount, IsRecoverableInAnyOtherDirectory) {
    for (const IfdId id : {IfdId::gps, IfdId::interoperability, IfdId::exif, kImpossible}) {
        OpenedTiff<> file(TiffBuilder().firstOffset(8));
        EXPECT_EQ(recoverableErrorOf([&] { file.readDirectory(id); }),
                  unreadableCount(file.name()));
    }
}

// Not reachable from a file, where no tag has been read before the count.
TEST(UnreadableCount, IsRecoverableInAnImageDirectoryThatHasFields) {
    inQuietCall([] {
        OpenedTiff<> file(rotatedImage());
        IFD directory(*file, IfdId::image);
        directory.readIfd();
        ASSERT_TRUE((*file).seek((*file).fileSize()));
        EXPECT_EQ(recoverableErrorOf([&] { directory.readIfd(); }), unreadableCount(file.name()));
    });
}

TEST(TruncatedTable, IsRecoverableAndNamesTheKindOfDirectory) {
    inQuietCall([] {
        const Bytes file = tiffOf(Dir().shorts(274, {6}).statedCount(2));
        for (const auto& [id, what] :
             {std::pair{IfdId::image, "IFD table #0"},
              {IfdId::gps, "the GPSInfo sub IFD table"},
              {IfdId::interoperability, "the Interoperability sub IFD table"},
              {IfdId::exif, "the Exif sub IFD table"},
              {kImpossible, ""}}) {
            OpenedTiff<> opened(file);
            EXPECT_EQ(recoverableErrorOf([&, id = id] { opened.readDirectory(id); }),
                      unreadableTable(what));
        }
    });
}

TEST(TruncatedTable, IsNumberedByTheFieldsOfItsDirectory) {
    inQuietCall([] {
        OpenedTiff<> opened(tiffOf(Dir().shorts(274, {6}), Dir().shorts(274, {6}).statedCount(2)));
        IFD directory(*opened, IfdId::image);
        directory.readIfd();
        ASSERT_TRUE((*opened).seek(26));
        EXPECT_EQ(recoverableErrorOf([&] { directory.readIfd(); }),
                  unreadableTable("IFD table #22"));
    });
}

TEST(DirectoryWithoutEntries, IsRecoverable) {
    inQuietCall([] {
        TiffBuilder file;
        file.image();
        OpenedTiff<> opened(file);
        EXPECT_EQ(recoverableErrorOf([&] { opened.readDirectory(); }), zeroEntries(8));
    });
}

TEST(App1Limit, ReportsALargerTableAsRecoverable) {
    inQuietCall([] {
        OpenedTiff<JpegTagFile> opened(tiffOf(Dir().statedCount(5462)));
        EXPECT_EQ(recoverableErrorOf([&] { opened.readDirectory(); }).identifier,
                  "ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded");
    });
}

/// Tables of 12-byte entries have 65532 or 65544 bytes, and no size in between.
template <std::int32_t EntrySize>
class WideEntryReader : public JpegTagFile {
public:
    explicit WideEntryReader(const char* fileName) : JpegTagFile(fileName) {
        setLayout(EntrySize, 2, 4);
    }
};

TEST(App1Limit, AllowsATableOf65536Bytes) {
    // 4096 entries of 16 bytes: unknown tag 60000, BYTE, count 1.
    const Bytes entry{0x60, 0xEA, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0};
    Bytes bytes{'I', 'I', 42, 0, 8, 0, 0, 0, 0x00, 0x10};
    for (int i = 0; i < 4096; ++i) {
        bytes.insert(bytes.end(), entry.begin(), entry.end());
    }
    inQuietCall([&] {
        const IFD directory = OpenedTiff<WideEntryReader<16>>(bytes).readDirectory();
        EXPECT_EQ(directory.tableSize(), 65'536U);
        EXPECT_EQ(directory.unknownTags().size(), 4096U);
    });
}

TEST(App1Limit, RejectsATableOf65538Bytes) {
    inQuietCall([] {
        // 3641 entries of 18 bytes.
        OpenedTiff<WideEntryReader<18>> opened(Bytes{'I', 'I', 42, 0, 8, 0, 0, 0, 0x39, 0x0E});
        EXPECT_EQ(recoverableErrorOf([&] { opened.readDirectory(); }).identifier,
                  "ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded");
    });
}

TEST(App1Limit, MessageNamesTheKindOfDirectory) {
    for (const auto& [id, kind] : {std::pair{IfdId::image, ""},
                                   {IfdId::gps, "GPS "},
                                   {IfdId::interoperability, "interoperability "},
                                   {IfdId::exif, "Exif "}}) {
        OpenedTiff<> file(rotatedImage());
        std::ostringstream stream;
        IFD(*file, id).constructErrMsgForApp1Exceeded(stream);
        EXPECT_EQ(
            stream.str(),
            std::string("The ") + kind +
                " image file directory at byte position 0 claims to have 0 entries, which "
                "will exceed the maximum allowed size (64KB) of the APP1 segment specified by "
                "the JPEG standard.  This IFD is being ignored.");
    }
}

TEST(App1Limit, MessageRejectsAnyOtherKind) {
    OpenedTiff<> file(rotatedImage());
    std::ostringstream stream;
    EXPECT_EQ(
        recoverableErrorOf([&] { IFD(*file, kImpossible).constructErrMsgForApp1Exceeded(stream); }),
        message("ZEPHRA:veltrace:IFD::constructErrMsgForApp1Exceeded:unhandledIfdType",
                "Unhandled IFD type encountered during check for maximal APP1 segment "
                "length."));
}

TEST(ImpossibleIfdId, OfATagEndsTheWholeRead) {
    inQuietCall([] {
        OpenedTiff<> file(rotatedImage());
        EXPECT_EQ(fatalErrorOf([&] { file.readDirectory(kImpossible); }),
                  message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId",
                          "Did not recognize IFD ID 7\n"));
    });
}

// The name is looked up before the type is checked; a bad type would only skip the entry.
TEST(ImpossibleIfdId, OfATagWithAnInvalidTypeEndsTheWholeReadToo) {
    inQuietCall([] {
        for (const std::uint16_t type : {std::uint16_t{0}, std::uint16_t{14}}) {
            OpenedTiff<> file(tiffOf(Dir().entryAt(271, type, 1, 0)));
            EXPECT_EQ(fatalErrorOf([&] { file.readDirectory(kImpossible); }).identifier,
                      "ZEPHRA:veltrace:getTagName:unrecognizedIfdId");
        }
    });
}

}  // namespace

}  // namespace veltrace::test
