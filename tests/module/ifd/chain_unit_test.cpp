// The members of a chain, and a chain without end.
#include <algorithm>
#include <gmock/gmock.h>
#include <map>

#include "ifd/ifd_set.h"
#include "support/messages.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(NewChain, IsEmpty) {
    const IFDSet chain;
    EXPECT_EQ(chain.getNumIfds(), 0U);
    EXPECT_THAT(chain.directories(), IsEmpty());
    EXPECT_THAT(chain.fieldNames(), IsEmpty());
    EXPECT_FALSE(chain.hasUnknownTags());
}

TEST(ReadChain, HasItsReaderItsIdAndItsDirectories) {
    inQuietCall([] {
        OpenedTiff<> opened(tiffOf(Dir().shorts(274, {6}), Dir().shorts(274, {8})));
        const IFDSet chain(*opened, IfdId::image);
        EXPECT_EQ(chain.reader(), &*opened);
        EXPECT_EQ(chain.ifdId(), IfdId::image);
        EXPECT_EQ(chain.getNumIfds(), 2U);
        ASSERT_EQ(chain.directories().size(), 2U);
        EXPECT_EQ(chain.directories()[0].position(), 8);
        EXPECT_EQ(chain.directories()[1].position(), 26);
        EXPECT_EQ(chain.directories()[1].ifdId(), IfdId::image);
    });
}

TEST(FieldNames, ListEachKnownTagIdInAscendingOrder) {
    inQuietCall([] {
        OpenedTiff<> opened(tiffOf(
            Dir().ascii(305, "kiln").shorts(256, {640}).shorts(271, {1}).shorts(60'000, {1})));
        const IFDSet chain(*opened, IfdId::exif);
        EXPECT_THAT(chain.fieldNames(), ElementsAre(Pair(271, "Make"), Pair(305, "Software")));
    });
}

TEST(FieldNames, ListATagOfTwoDirectoriesOnce) {
    inQuietCall([] {
        OpenedTiff<> opened(tiffOf(Dir().ascii(305, "kiln").ascii(315, "ash"),
                                   Dir().ascii(305, "oven").ascii(271, "clay")));
        const auto rows = IFDSet(*opened, IfdId::image).fieldNames();
        EXPECT_TRUE(std::ranges::is_sorted(rows));
        const std::map<std::uint16_t, std::string_view> names(rows.begin(), rows.end());
        EXPECT_EQ(names.size(), 22U + 3U) << "the fallbacks and three other tags";
        EXPECT_EQ(names.at(271), "Make");
        EXPECT_EQ(names.at(305), "Software");
        EXPECT_EQ(names.at(315), "Artist");
        EXPECT_EQ(names.at(254), "NewSubFileType");
        EXPECT_EQ(names.at(325), "TileByteCounts");
    });
}

TEST(UnknownTagFlag, IsSetByAnyDirectoryButNotByKnownTags) {
    inQuietCall([] {
        OpenedTiff<> unknown(tiffOf(Dir().shorts(60'000, {1}), Dir().shorts(274, {8})));
        EXPECT_TRUE(IFDSet(*unknown, IfdId::image).hasUnknownTags());
        OpenedTiff<> known(tiffOf(Dir().shorts(274, {8})));
        EXPECT_FALSE(IFDSet(*known, IfdId::image).hasUnknownTags());
    });
}

TEST(ReadChain, DropsADirectoryWithoutFields) {
    inQuietCall([] {
        OpenedTiff<JpegTagFile> opened(tiffOf(Dir().shorts(256, {640})));
        const IFDSet chain(*opened, IfdId::image);
        EXPECT_EQ(chain.getNumIfds(), 0U);
        EXPECT_THAT(chain.fieldNames(), IsEmpty());
    });
}

// Offsets are relative to the header, which here follows four other bytes.

TEST(ShiftedChain, IsFollowedFromItsHeader) {
    inQuietCall([] {
        OpenedTiff<> opened(
            bytesOf("kiln") + tiffOf(Dir().shorts(274, {6}), Dir().shorts(274, {8})), 4);
        const IFDSet chain(*opened, IfdId::image);
        ASSERT_EQ(chain.getNumIfds(), 2U);
        EXPECT_EQ(chain.directories()[0].position(), 12);
        EXPECT_EQ(chain.directories()[1].position(), 30);
    });
}

TEST(ShiftedChain, NextPointerToTheEndOfTheFilePasses) {
    inQuietCall([] {
        OpenedTiff<> opened(bytesOf("kiln") + tiffOf(Dir().shorts(274, {6}).next(26)), 4);
        EXPECT_EQ((*opened).fileSize(), 30);
        EXPECT_EQ(fatalErrorOf([&] { const IFDSet chain(*opened, IfdId::image); }).identifier,
                  "ZEPHRA:veltrace:numIfdEntriesReadError");
    });
}

TEST(ShiftedChain, NextPointerPastTheEndOfTheFileIsAWarning) {
    TiffBuilder file;
    file.image().shorts(274, {6}).next(27);
    OpenedTiff<> opened(bytesOf("kiln") + file.bytes(), 4);
    const auto result = inCall([&] {
        const IFDSet chain(*opened, IfdId::image);
        EXPECT_EQ(chain.getNumIfds(), 1U);
    });
    EXPECT_THAT(result.warnings(), ElementsAre(nextPointerPastTheEnd(opened.name())));
    EXPECT_FALSE(result.error());
}

TEST(ReadChain, CopiesEveryMember) {
    inQuietCall([] {
        OpenedTiff<> opened(tiffOf(Dir().shorts(274, {6}).shorts(60'000, {1})));
        const IFDSet chain(*opened, IfdId::exif);
        IFDSet copy;
        copy = chain;
        EXPECT_EQ(copy.reader(), &*opened);
        EXPECT_EQ(copy.ifdId(), IfdId::exif);
        EXPECT_EQ(copy.getNumIfds(), 1U);
        EXPECT_EQ(copy.fieldNames(), chain.fieldNames());
        EXPECT_TRUE(copy.hasUnknownTags());
        EXPECT_NE(copy.directories().data(), chain.directories().data());
    });
}

/// Links each directory back to the first one, a thousand times.
class LoopingReader : public ClassicTiffTagFile {
public:
    using ClassicTiffTagFile::ClassicTiffTagFile;

    std::size_t readOffset(std::uint64_t* offset) override {
        *offset = loops_ > 0 ? 8 : 0;
        --loops_;
        return 1;
    }

private:
    int loops_ = 1000;
};

// Kept: the number of directories is not limited, and their positions are not compared.
TEST(ReadChain, FollowsALoopWithoutLimit) {
    inQuietCall([] {
        OpenedTiff<LoopingReader> opened(tiffOf(Dir().shorts(274, {6})));
        const IFDSet chain(*opened, IfdId::image);
        EXPECT_EQ(chain.getNumIfds(), 1001U);
        EXPECT_EQ(chain.directories().back().position(), 8);
    });
}

}  // namespace

}  // namespace veltrace::test
