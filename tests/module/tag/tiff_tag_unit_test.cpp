// A single tag: what it keeps of its entry, copies, and failures that no file can cause.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string_view>
#include <vector>

#include "ifd/ifd_set.h"
#include "support/memory_file.h"
#include "support/messages.h"
#include "support/module_run.h"
#include "support/one_tag.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "support/tiff_builder.h"
#include "support/tiff_tag_peer.h"
#include "support/unseekable_file.h"
#include "tag/tiff_tag.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using namespace std::string_view_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNan;

// A little-endian classic entry in memory.
std::vector<std::byte> rawEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                                std::uint32_t offset) {
    Bytes bytes;
    append(bytes, Order::little, tag);
    append(bytes, Order::little, type);
    append(bytes, Order::little, count);
    append(bytes, Order::little, offset);
    std::vector<std::byte> entry(bytes.size());
    std::memcpy(entry.data(), bytes.data(), bytes.size());
    return entry;
}

TEST(TiffTag, KeepsNumeratorsAndDenominatorsInFileOrder) {
    const zephra::CallResult result = inCall([] {
        const OneTag one(tiffOf(Dir().rationals(271, {{1, 0}, {3, 2}})));
        EXPECT_THAT(one.tag().rawValues(), ElementsAre(1, 0, 3, 2));
        EXPECT_THAT(one.tag().outputValues(), ElementsAre(IsNan(), 1.5));
    });
    EXPECT_EQ(result.warnings().size(), 1U);
    EXPECT_EQ(result.error(), std::nullopt);
}

TEST(TiffTag, WidensRationalsWithTheirSign) {
    inQuietCall([] {
        EXPECT_THAT(
            OneTag(tiffOf(Dir().rationals(271, {{4294967295, 2147483648}}))).tag().rawValues(),
            ElementsAre(4294967295, 2147483648));
        EXPECT_THAT(OneTag(tiffOf(Dir().signedRationals(
                               271, {{-1, std::numeric_limits<std::int32_t>::min()}})))
                        .tag()
                        .rawValues(),
                    ElementsAre(-1, -2147483648.0));
    });
}

TEST(TiffTag, KeepsTheFieldsOfItsEntry) {
    inQuietCall([] {
        const OneTag<JpegTagFile> one(jpegWithExif(tiffOf(Dir().shorts(271, {7, 8, 9}))));
        const TiffTag& tag = one.tag();
        EXPECT_EQ(tag.tagId(), 271);
        EXPECT_EQ(tag.dataType(), 3);
        EXPECT_EQ(tag.count(), 3U);
        EXPECT_EQ(tag.byteSize(), 6U);
        EXPECT_EQ(tag.valueOffset(), 26U);
        EXPECT_EQ(tag.valueOffsetLowWord(), 26U);
        EXPECT_EQ(tag.ifdId(), IfdId::image);
        EXPECT_EQ(tag.name(), "Make");
        EXPECT_EQ(tag.firstValue(), 7);
        EXPECT_THAT(tag.rawValues(), ElementsAre(7, 8, 9));
        EXPECT_THAT(tag.outputValues(), ElementsAre(7, 8, 9));
        EXPECT_THAT(tag.rawText(), IsEmpty());
        EXPECT_THAT(tag.outputText(), IsEmpty());
        EXPECT_EQ(tag.subDirectory(), nullptr);
        EXPECT_EQ(TiffTag::reserved(), 0U);
    });
}

TEST(TiffTag, KeepsTheNulOfAnAsciiText) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().ascii(271, "AB")));
        EXPECT_EQ(one.tag().rawText(), "AB\0"sv);
        EXPECT_THAT(one.tag().rawValues(), IsEmpty());
        EXPECT_THAT(one.tag().outputValues(), IsEmpty());
        EXPECT_EQ(one.tag().firstValue(), std::nullopt);
    });
}

TEST(TiffTag, HasNoValuesForACountOfZeroOfAnyType) {
    inQuietCall([] {
        for (std::uint16_t type = 1; type <= 12; ++type) {
            const OneTag one(tiffOf(Dir().entryAt(271, type, 0, 26)));
            const TiffTag& tag = one.tag();
            EXPECT_EQ(tag.dataType(), type);
            EXPECT_EQ(tag.count(), 0U);
            EXPECT_EQ(tag.byteSize(), 0U);
            EXPECT_EQ(tag.valueOffset(), 0U);
            EXPECT_THAT(tag.rawValues(), IsEmpty());
            EXPECT_THAT(tag.outputValues(), IsEmpty());
            EXPECT_THAT(tag.rawText(), IsEmpty());
            EXPECT_THAT(tag.outputText(), IsEmpty());
        }
    });
}

TEST(TiffTag, CountsTheBytesOfItsValueIn32Bits) {
    inQuietCall([] {
        EXPECT_EQ(OneTag(tiffOf(Dir().rationals(271, {{1, 2}, {3, 4}, {5, 6}}))).tag().byteSize(),
                  24U);
        TiffBuilder pointer;
        pointer.child().shorts(37383, {5});
        pointer.image().entryAt(34665, 4, 0x40000001, 26);
        const OneTag one(pointer.bytes());
        EXPECT_EQ(one.tag().count(), 0x40000001U);
        EXPECT_EQ(one.tag().byteSize(), 4U);
    });
}

TEST(TiffTag, CopiesItsSubDirectory) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}))));
        const TiffTag& original = one.tag();
        ASSERT_NE(original.subDirectory(), nullptr);
        EXPECT_EQ(original.subDirectory()->ifdId(), IfdId::exif);
        EXPECT_EQ(original.valueOffset(), 26U);
        const TiffTag copy = original;
        ASSERT_NE(copy.subDirectory(), nullptr);
        EXPECT_NE(copy.subDirectory(), original.subDirectory());
        const auto& nested = copy.subDirectory()->directories().front().knownTags().front();
        EXPECT_EQ(nested.name(), "MeteringMode");
    });
}

TEST(TiffTag, CopiesItsValuesAndTexts) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().rationals(271, {{1, 2}})));
        TiffTag copy(259, IfdId::image);
        copy = one.tag();
        EXPECT_EQ(copy.name(), "Make");
        EXPECT_THAT(copy.rawValues(), ElementsAre(1, 2));
        EXPECT_THAT(copy.outputValues(), ElementsAre(0.5));
        EXPECT_THAT(copy.outputText(), IsEmpty());
        EXPECT_EQ(copy.subDirectory(), nullptr);
    });
}

TEST(TiffTag, CopiesRawTextAndOutputText) {
    inQuietCall([] {
        const OneTag one(tiffOf(Dir().ascii(271, "AB")));
        TiffTag copy(259, IfdId::image);
        EXPECT_EQ(TiffTag(copy).outputText(), "Uncompressed");
        copy = one.tag();
        EXPECT_EQ(copy.rawText(), "AB\0"sv);
        EXPECT_THAT(copy.outputText(), IsEmpty());
        EXPECT_THAT(copy.outputValues(), IsEmpty());
    });
}

TEST(TiffTag, RestoresThePositionAfterASubDirectory) {
    inQuietCall([] {
        const MemoryFile memory(tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}))));
        ClassicTiffTagFile reader(memory.name().c_str());
        ASSERT_TRUE(reader.seek(21));
        const TiffTag tag(reader, rawEntry(34665, 4, 1, 26).data(), IfdId::image);
        EXPECT_EQ(reader.position(), 21);
        EXPECT_NE(tag.subDirectory(), nullptr);
    });
}

struct FailedSeek {
    std::uint16_t tag;
    IfdId ifdId;
    std::string_view identifier;
    std::string_view text;
};

// The last one is illegal in its directory too, which is checked later.
TEST(TiffTag, ReportsAFailedSeekToItsValueOrSubDirectory) {
    constexpr std::string_view kBadSeek = "ZEPHRA:veltrace:TiffTag:badSubIfdSeek";
    const FailedSeek rows[] = {
        {271, IfdId::image, "ZEPHRA:veltrace:TiffTag:badTagDataOffsetSeek",
         "Could not seek to data for tag with ID 271, the image may be corrupt."},
        {330, IfdId::image, kBadSeek, "Could not seek to start of generic sub IFD\n"},
        {34665, IfdId::image, kBadSeek, "Could not seek to start of Exif sub IFD\n"},
        {34853, IfdId::image, kBadSeek, "Could not seek to start of GPS sub IFD\n"},
        {40965, IfdId::image, kBadSeek, "Could not seek to start of IOP sub IFD\n"},
        {34665, IfdId::gps, kBadSeek, "Could not seek to start of Exif sub IFD\n"}};
    inQuietCall([&] {
        const UnseekableFile file;
        ClassicTiffTagFile reader(file.name().c_str());
        for (const FailedSeek& row : rows) {
            const auto entry =
                row.tag == 271 ? rawEntry(271, 3, 3, 26) : rawEntry(row.tag, 4, 1, 26);
            EXPECT_EQ(
                recoverableErrorOf([&] { const TiffTag tag(reader, entry.data(), row.ifdId); }),
                message(row.identifier, row.text));
        }
    });
}

TEST(TiffTag, RejectsAnEntryWithAnInvalidType) {
    inQuietCall([] {
        const MemoryFile memory(Bytes(64, 0));
        ClassicTiffTagFile reader(memory.name().c_str());
        const auto errorOf = [&](std::uint16_t type) {
            const auto entry = rawEntry(271, type, 1, 0);
            return recoverableErrorOf(
                [&] { const TiffTag tag(reader, entry.data(), IfdId::image); });
        };
        EXPECT_EQ(errorOf(0), noType(271));
        EXPECT_EQ(errorOf(14), badType(271, 14));
    });
}

TEST(TiffTag, RejectsATypeThatCannotBeDecoded) {
    TiffTag tag(259, IfdId::image);
    const auto decode = [&](std::uint16_t type) {
        TiffTagPeer::setDataType(tag, type);
        return recoverableErrorOf([&] { TiffTagPeer::decodeValues(tag); });
    };
    EXPECT_EQ(decode(0),
              message("ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                      "Encountered tag with datatype format TIFF_NOTYPE.  Skipping... \n"));
    EXPECT_EQ(decode(13), ifdType(259));
    EXPECT_EQ(decode(14), message("ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                                  "Did not recognize tag format 14\n"));
    EXPECT_EQ(decode(65535), message("ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                                     "Did not recognize tag format 65535\n"));
}

TEST(TiffTag, RejectsAnImpossibleKindOfDirectory) {
    inQuietCall([] {
        const MemoryFile memory(Bytes(64, 0));
        ClassicTiffTagFile reader(memory.name().c_str());
        const auto entry = rawEntry(271, 0, 1, 0);
        EXPECT_EQ(fatalErrorOf([&] { const TiffTag tag(reader, entry.data(), IfdId{4}); }),
                  message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId",
                          "Did not recognize IFD ID 4\n"));
    });
}

}  // namespace

}  // namespace veltrace::test
