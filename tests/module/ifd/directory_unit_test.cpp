// The members of a directory after it was read.
#include <gmock/gmock.h>

#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::uint16_t> kBaseline{254, 258, 259, 263, 266, 273, 274, 277, 278, 279, 280,
                                           281, 282, 283, 284, 290, 296, 320, 322, 323, 324, 325};

template <class Tags>
std::vector<std::uint16_t> idsOf(const Tags& tags) {
    std::vector<std::uint16_t> ids;
    for (const TiffTag& tag : tags) {
        ids.push_back(tag.tagId());
    }
    return ids;
}

TiffBuilder fileOf(std::uint16_t tag) {
    TiffBuilder file;
    file.image().shorts(tag, {1});
    return file;
}

TEST(NewDirectory, IsEmpty) {
    OpenedTiff<> file(fileOf(274));
    const IFD directory(*file, IfdId::exif);
    EXPECT_EQ(directory.ifdId(), IfdId::exif);
    EXPECT_EQ(directory.position(), 0);
    EXPECT_EQ(directory.tableSize(), 0U);
    EXPECT_EQ(directory.width(), 0);
    EXPECT_EQ(directory.height(), 0);
    EXPECT_EQ(directory.spare(), 0);
    EXPECT_THAT(directory.knownTags(), IsEmpty());
    EXPECT_THAT(directory.unknownTags(), IsEmpty());
    EXPECT_EQ(directory.photometricCode(), -1);
    EXPECT_THAT(directory.bitsPerSample(), IsEmpty());
    EXPECT_EQ(directory.sampleCount(), 1U);
    EXPECT_EQ(directory.getNumFields(), 0);
    for (const std::uint16_t tag : kBaseline) {
        EXPECT_FALSE(directory.has(tag)) << tag;
    }
}

TEST(NewDirectory, HasNoTagsWithoutAReader) {
    const IFD directory;
    EXPECT_THAT(directory.knownTags(), IsEmpty());
    EXPECT_THAT(directory.unknownTags(), IsEmpty());
    EXPECT_THAT(directory.bitsPerSample(), IsEmpty());
}

TEST(ReadDirectory, HasItsPositionAndTheSizeOfItsTable) {
    inQuietCall([] {
        const IFD directory =
            OpenedTiff<>(tiffOf(Dir().shorts(274, {6}).shorts(266, {2}))).readDirectory();
        EXPECT_EQ(directory.position(), 8);
        EXPECT_EQ(directory.tableSize(), 24U);

        const IFD bigDirectory =
            OpenedTiff<BigTiffTagFile>(
                tiffOf({Order::little, Flavour::big}, Dir().shorts(274, {6}).shorts(266, {2})))
                .readDirectory();
        EXPECT_EQ(bigDirectory.position(), 16);
        EXPECT_EQ(bigDirectory.tableSize(), 40U);
    });
}

TEST(ReadDirectory, LargestTableOfAJpegFileHas65532Bytes) {
    inQuietCall([] {
        TiffBuilder file;
        for (int i = 0; i < 5461; ++i) {
            file.image().shorts(274, {6});
        }
        EXPECT_EQ(OpenedTiff<JpegTagFile>(file).readDirectory().tableSize(), 65'532U);
    });
}

TEST(ReadDirectory, KeepsKnownAndUnknownTagsInEntryOrder) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(tiffOf(Dir()
                                                      .ascii(305, "kiln")
                                                      .shorts(60'001, {1})
                                                      .shorts(256, {640})
                                                      .shorts(271, {1})
                                                      .shorts(60'000, {2})
                                                      .shorts(257, {480})
                                                      .ascii(305, "oven")))
                                  .readDirectory(IfdId::exif);
        EXPECT_THAT(idsOf(directory.knownTags()), ElementsAre(305, 271, 305));
        EXPECT_THAT(idsOf(directory.unknownTags()), ElementsAre(60'001, 60'000));
        EXPECT_EQ(directory.width(), 640);
        EXPECT_EQ(directory.height(), 480);
        EXPECT_EQ(directory.spare(), 0);
        EXPECT_EQ(directory.getNumFields(), 4) << "three known tags and the list of unknown ones";
    });
}

TEST(ReadDirectory, KeepsWidthAndHeightOutOfItsKnownTags) {
    inQuietCall([] {
        for (const IfdId id : {IfdId::image, IfdId::gps, IfdId::interoperability, IfdId::exif}) {
            const IFD directory =
                OpenedTiff<>(tiffOf(Dir().shorts(256, {640}).shorts(257, {480}))).readDirectory(id);
            EXPECT_EQ(idsOf(directory.knownTags()),
                      id == IfdId::image ? kBaseline : std::vector<std::uint16_t>{});
            EXPECT_THAT(directory.unknownTags(), IsEmpty());
            EXPECT_EQ(directory.width(), 640);
            EXPECT_EQ(directory.height(), 480);
        }
    });
}

TEST(ReadDirectory, CopiesEveryMember) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(tiffOf(Dir()
                                                      .shorts(256, {640})
                                                      .shorts(257, {480})
                                                      .shorts(258, {8, 4})
                                                      .shorts(262, {2})
                                                      .shorts(277, {1, 1, 1})
                                                      .shorts(60'000, {1})))
                                  .readDirectory(IfdId::exif);
        IFD copy;
        copy = directory;
        EXPECT_THAT(idsOf(copy.knownTags()), ElementsAre(258, 262, 277));
        EXPECT_NE(&copy.knownTags().front(), &directory.knownTags().front());
        EXPECT_THAT(idsOf(copy.unknownTags()), ElementsAre(60'000));
        EXPECT_EQ(copy.position(), 8);
        EXPECT_EQ(copy.ifdId(), IfdId::exif);
        EXPECT_EQ(copy.tableSize(), 72U);
        EXPECT_EQ(copy.width(), 640);
        EXPECT_EQ(copy.height(), 480);
        EXPECT_EQ(copy.spare(), 0);
        EXPECT_TRUE(copy.has(258));
        EXPECT_TRUE(copy.has(277));
        EXPECT_FALSE(copy.has(259));
        EXPECT_EQ(copy.photometricCode(), 2);
        EXPECT_THAT(copy.bitsPerSample(), ElementsAre(8, 4));
        EXPECT_EQ(copy.sampleCount(), 3U);
    });
}

TEST(ReadDirectory, PassesItsIfdIdToItsTags) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(fileOf(1)).readDirectory(IfdId::gps);
        ASSERT_EQ(directory.knownTags().size(), 1U);
        EXPECT_EQ(directory.knownTags().front().name(), "GPSLatitudeRef");
        EXPECT_EQ(directory.knownTags().front().ifdId(), IfdId::gps);
    });
}

// Presence and fallbacks

class BaselineTag : public testing::TestWithParam<std::uint16_t> {};

INSTANTIATE_TEST_SUITE_P(Tags, BaselineTag, testing::ValuesIn(kBaseline));

TEST_P(BaselineTag, IsPresentAndAllOthersGetFallbacksInAscendingOrder) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(fileOf(GetParam())).readDirectory();
        std::vector<std::uint16_t> expected{GetParam()};
        for (const std::uint16_t tag : kBaseline) {
            EXPECT_EQ(directory.has(tag), tag == GetParam()) << tag;
            if (tag != GetParam()) {
                expected.push_back(tag);
            }
        }
        EXPECT_EQ(idsOf(directory.knownTags()), expected);
        EXPECT_EQ(directory.getNumFields(), 22);
    });
}

class OtherTag : public testing::TestWithParam<std::uint16_t> {};

// 253 and 326 are just outside the range of baseline ids, the others inside it or far away.
INSTANTIATE_TEST_SUITE_P(Tags, OtherTag,
                         testing::Values(253, 255, 256, 257, 262, 264, 265, 270, 285, 291, 301, 305,
                                         317, 319, 321, 326, 339, 60'000));

TEST_P(OtherTag, ReplacesNoFallback) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(fileOf(GetParam())).readDirectory();
        for (const std::uint16_t tag : kBaseline) {
            EXPECT_FALSE(directory.has(tag)) << tag;
        }
        EXPECT_FALSE(directory.has(GetParam()));
        std::vector<std::uint16_t> ids = idsOf(directory.knownTags());
        std::erase(ids, GetParam());
        EXPECT_EQ(ids, kBaseline);
    });
}

TEST(Fallbacks, AreAddedOnlyToImageDirectoriesOfTiffFiles) {
    inQuietCall([] {
        const TiffBuilder file = fileOf(1);
        for (const IfdId id : {IfdId::gps, IfdId::interoperability}) {
            EXPECT_THAT(idsOf(OpenedTiff<>(file).readDirectory(id).knownTags()), ElementsAre(1));
        }
        EXPECT_THAT(OpenedTiff<>(file).readDirectory(IfdId::exif).knownTags(), IsEmpty());
        EXPECT_THAT(OpenedTiff<JpegTagFile>(file).readDirectory().knownTags(), IsEmpty());
        EXPECT_EQ(idsOf(OpenedTiff<>(file).readDirectory().knownTags()), kBaseline);
    });
}

struct SampleCase {
    TiffDirectory directory;
    std::vector<double> bitsPerSample;
    std::uint32_t sampleCount;
};

// The count of SamplesPerPixel (277) decides, not its value.
TEST(Samples, HaveTheBitsOfTheFileOrOneForEachValueOfSamplesPerPixel) {
    inQuietCall([] {
        for (const auto& [entries, bits, count] :
             {SampleCase{Dir().shorts(277, {1, 1, 1}), {1, 1, 1}, 3},
              SampleCase{Dir().shorts(277, {3}), {1}, 1},
              SampleCase{Dir().shorts(258, {8, 4}).shorts(277, {3}), {8, 4}, 1}}) {
            const IFD directory = OpenedTiff<>(tiffOf(entries)).readDirectory();
            EXPECT_EQ(directory.sampleCount(), count);
            EXPECT_THAT(directory.bitsPerSample(), ElementsAreArray(bits));
            EXPECT_EQ(directory.has(258), bits.front() == 8);
        }
    });
}

TEST(Fallbacks, AreOneForBitsPerSampleAndMaxSampleValue) {
    inQuietCall([] {
        const IFD directory = OpenedTiff<>(fileOf(274)).readDirectory();
        EXPECT_THAT(directory.bitsPerSample(), ElementsAre(1));
        for (const TiffTag& tag : directory.knownTags()) {
            if (tag.tagId() == 258 || tag.tagId() == 281) {
                EXPECT_THAT(tag.outputValues(), ElementsAre(1)) << tag.tagId();
            }
        }
    });
}

TEST(Presence, IsRecordedInEveryKindOfDirectory) {
    inQuietCall([] {
        const IFD directory =
            OpenedTiff<>(tiffOf(Dir().shorts(258, {8, 8}).shorts(262, {2}).shorts(277, {1, 1})))
                .readDirectory(IfdId::gps);
        EXPECT_TRUE(directory.has(258));
        EXPECT_TRUE(directory.has(277));
        EXPECT_THAT(directory.bitsPerSample(), ElementsAre(8, 8));
        EXPECT_EQ(directory.photometricCode(), 2);
        EXPECT_EQ(directory.sampleCount(), 2U);
    });
}

TEST(Presence, IsRecordedByNoteTag) {
    inQuietCall([] {
        OpenedTiff<> file(fileOf(274));
        IFD directory(*file, IfdId::image);
        directory.noteTag(TiffTag(259, IfdId::image));
        EXPECT_TRUE(directory.has(259));
        EXPECT_FALSE(directory.has(258));
        directory.noteTag(TiffTag(258, IfdId::image, 2U));
        EXPECT_TRUE(directory.has(258));
        EXPECT_THAT(directory.bitsPerSample(), ElementsAre(1, 1));
        EXPECT_THAT(directory.knownTags(), IsEmpty());
    });
}

TEST(NumberOfFields, WrapsAt16Bits) {
    inQuietCall([] {
        TiffBuilder file;
        for (int i = 0; i < 65'535; ++i) {
            file.image().shorts(297, {1});
        }
        EXPECT_EQ(OpenedTiff<>(file).readDirectory(IfdId::exif).getNumFields(), 65'535);
        EXPECT_EQ(OpenedTiff<>(file).readDirectory().getNumFields(), 21) << "65535 + 22 - 65536";
    });
}

}  // namespace

}  // namespace veltrace::test
