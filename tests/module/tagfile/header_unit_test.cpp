// What a reader knows after its header, and failures that no file can cause.
#include <gmock/gmock.h>
#include <memory>

#include "support/memory_file.h"
#include "support/messages.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "support/tiff_builder.h"
#include "support/unseekable_file.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::Each;

template <class Reader>
std::unique_ptr<TagFile> make(const char* fileName) {
    return std::make_unique<Reader>(fileName);
}

struct ReaderCase {
    const char* name;
    std::unique_ptr<TagFile> (*make)(const char* fileName);
    Flavour flavour;
};

class TiffHeader : public testing::TestWithParam<ReaderCase> {
protected:
    [[nodiscard]] static Bytes header(Order order, std::uint16_t version = 42) {
        const bool big = GetParam().flavour == Flavour::big;
        return TiffBuilder(order, GetParam().flavour)
            .version(version)
            .firstOffset(big ? 16 : 8)
            .bytes();
    }

    static std::string identifier(const std::string& name) {
        const bool big = GetParam().flavour == Flavour::big;
        return std::string("ZEPHRA:veltrace:") + (big ? "bigTiff:" : "") + name;
    }

    template <class File>
    static zephra::Message fatalError(const File& file) {
        const auto reader = GetParam().make(file.name().c_str());
        return fatalErrorOf([&] { reader->readHeader(); });
    }
};

const ReaderCase kReaders[] = {
    {"Jpeg", make<JpegTagFile>, Flavour::classic},
    {"ClassicTiff", make<ClassicTiffTagFile>, Flavour::classic},
    {"BigTiff", make<BigTiffTagFile>, Flavour::big},
};

INSTANTIATE_TEST_SUITE_P(Readers, TiffHeader, testing::ValuesIn(kReaders),
                         [](const auto& test) { return test.param.name; });

TEST_P(TiffHeader, SetsTheSwapFlagForMMOnlyOnALittleEndianComputer) {
    for (const bool big : {false, true}) {
        const MemoryFile file(header(big ? Order::big : Order::little));
        const auto reader = GetParam().make(file.name().c_str());
        reader->readHeader();
        EXPECT_EQ(reader->headerByteOrder(), big ? HeaderByteOrder::big : HeaderByteOrder::little);
        EXPECT_THAT(reader->byteOrderMark(), Each(big ? 'M' : 'I'));
        EXPECT_EQ(reader->swapFlag(), big);
    }
}

TEST_P(TiffHeader, SetsTheSwapFlagAnewAtEachRead) {
    const Bytes swapped = header(Order::big);
    const MemoryFile file(swapped + header(Order::little));
    const auto reader = GetParam().make(file.name().c_str());
    reader->readHeader();
    EXPECT_TRUE(reader->swapFlag());
    ASSERT_TRUE(reader->seek(static_cast<std::int64_t>(swapped.size())));
    reader->readHeader();
    EXPECT_FALSE(reader->swapFlag());
}

TEST_P(TiffHeader, StoresAnyVersionWithoutComparingIt) {
    for (const Order order : {Order::little, Order::big}) {
        for (const std::uint16_t version : std::vector<std::uint16_t>{0, 42, 43, 0x2B00, 0xFFFE}) {
            const MemoryFile file(header(order, version));
            const auto reader = GetParam().make(file.name().c_str());
            reader->readHeader();
            EXPECT_EQ(reader->version(), version);
        }
    }
}

TEST_P(TiffHeader, StartsAtTheCurrentPositionAndOffsetsAreRelativeToIt) {
    const Bytes bytes = header(Order::big);
    const MemoryFile file(bytesOf("kiln") + bytes);
    const auto reader = GetParam().make(file.name().c_str());
    ASSERT_TRUE(reader->seek(4));
    reader->readHeader();
    EXPECT_EQ(reader->offsetBase(), 4);
    EXPECT_EQ(reader->position(), 4 + static_cast<std::int64_t>(bytes.size()));
}

TEST_P(TiffHeader, TruncatedByteOrderMarkIsFatal) {
    for (const Bytes& bytes : {Bytes{}, Bytes{'I'}}) {
        const MemoryFile file(bytes);
        EXPECT_EQ(fatalError(file), unreadableByteOrder(file.name()));
    }
}

TEST_P(TiffHeader, TruncatedVersionIsFatal) {
    for (const Bytes& bytes : {Bytes{'I', 'I'}, Bytes{'M', 'M', 0}}) {
        EXPECT_EQ(fatalError(MemoryFile(bytes)),
                  message(identifier("badTiffHeaderVersionRead"),
                          "Could not read TIFF header version number, the image may be corrupt."));
    }
}

TEST_P(TiffHeader, AnyOtherByteOrderMarkIsFatalAndReportedInNumbers) {
    for (const auto& [first, second] : std::vector<std::pair<std::uint8_t, std::uint8_t>>{
             {'I', 'M'}, {'M', 'I'}, {'i', 'i'}, {0, 0xFF}, {0x80, 'M'}}) {
        const MemoryFile file(Bytes{first, second} + Bytes(16, 0));
        EXPECT_EQ(fatalError(file), badByteOrder(first, second, file.name()));
    }
}

// Failures that a file can cause too; here, that they are fatal.

TEST_P(TiffHeader, TruncatedFirstOffsetIsFatal) {
    Bytes bytes = header(Order::little);
    bytes.pop_back();
    EXPECT_EQ(fatalError(MemoryFile(bytes)),
              message(identifier("badTiffHeaderOffsetRead"), unreadableFirstOffset().text));
}

TEST_P(TiffHeader, FirstOffsetPastTheEndIsFatalAndRelativeToTheHeader) {
    const Bytes bytes = header(Order::little);
    const MemoryFile file(bytesOf("kiln") + bytes);
    const auto size = static_cast<std::int64_t>(bytes.size());
    file.put(4 + size - (GetParam().flavour == Flavour::big ? 8 : 4),
             {static_cast<std::uint8_t>(size + 1)});
    const auto reader = GetParam().make(file.name().c_str());
    ASSERT_TRUE(reader->seek(4));
    EXPECT_EQ(
        fatalErrorOf([&] { reader->readHeader(); }),
        message(identifier("badTiffIfdOffset"), firstOffsetPastTheEnd(size + 5, size + 4).text));
}

TEST_P(TiffHeader, StartsAtMinusOneIfThePositionIsUnknown) {
    const UnseekableFile file;
    file.feed(header(Order::little));
    const auto reader = GetParam().make(file.name().c_str());
    const int position = GetParam().flavour == Flavour::big ? 15 : 7;
    EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
              message(identifier("badTiffIfdOffset"), firstOffsetPastTheEnd(position, 0).text));
    EXPECT_EQ(reader->offsetBase(), -1);
}

TEST_P(TiffHeader, FailedSeekIsFatal) {
    const MemoryFile file(
        TiffBuilder(Order::little, GetParam().flavour).firstOffset(std::uint64_t{1} << 31).bytes());
    file.put(std::int64_t{1} << 31, {0});
    EXPECT_EQ(fatalError(file),
              message(identifier("badTiffHeaderIfdOffset"),
                      "Could not seek to position specified by TIFF header offset pointer,  the "
                      "image may be corrupt.\n"));
}

void expectTruncationIsFatal(const Bytes& bytes, const std::string& text) {
    const MemoryFile file(bytes);
    BigTiffTagFile reader(file.name().c_str());
    EXPECT_EQ(fatalErrorOf([&] { reader.readHeader(); }),
              message("ZEPHRA:veltrace:bigTiff:badOffsetSizeRead", text));
}

TEST(BigTiffHeader, TruncatedOffsetSizeIsFatal) {
    const std::string text =
        "Could not read offset size in the TIFF header, the image may be corrupt.";
    expectTruncationIsFatal({'I', 'I', 43, 0}, text);
    expectTruncationIsFatal({'M', 'M', 43, 0, 0}, text);
}

// Kept: the identifier is the one of the offset size.
TEST(BigTiffHeader, TruncatedPaddingIsFatal) {
    const std::string text = "Could not read Big TIFF header padding, the image may be corrupt.";
    expectTruncationIsFatal({'I', 'I', 43, 0, 8, 0}, text);
    expectTruncationIsFatal({'M', 'M', 43, 0, 0, 8, 0}, text);
}

// readAll

TEST(ReadAll, AcceptsAnyVersionInAClassicFile) {
    for (const std::uint16_t version : std::vector<std::uint16_t>{43, 0, 0xFFFF}) {
        TiffBuilder builder;
        builder.version(version).image().shorts(274, {6});
        const MemoryFile file(builder.bytes());
        inQuietCall([&] {
            ClassicTiffTagFile reader(file.name().c_str());
            reader.readAll();
            EXPECT_EQ(reader.getNumIfds(), 1U);
        });
    }
}

TEST(ReadAll, LeavesNoDirectoriesIfTheHeaderFails) {
    const MemoryFile file(bytesOf("IM") + Bytes(16, 0));
    ClassicTiffTagFile reader(file.name().c_str());
    EXPECT_EQ(fatalErrorOf([&] { reader.readAll(); }).identifier, "ZEPHRA:veltrace:badEndianness");
    EXPECT_EQ(reader.ifdSet(), nullptr);
    EXPECT_EQ(reader.getNumIfds(), 0U);
}

TEST(ReadAll, LeavesNoDirectoriesIfALaterDirectoryFails) {
    const MemoryFile file(tiffOf(Dir().shorts(274, {6}), Dir()));
    inQuietCall([&] {
        ClassicTiffTagFile reader(file.name().c_str());
        EXPECT_EQ(recoverableErrorOf([&] { reader.readAll(); }).identifier,
                  "ZEPHRA:veltrace:zeroLengthIfdTable");
        EXPECT_EQ(reader.ifdSet(), nullptr);
        EXPECT_EQ(reader.getNumIfds(), 0U);
    });
}

TEST(ReadAll, UsesTheHeaderOfItsFormat) {
    const MemoryFile file(
        tiffOf({Order::little, Flavour::big}, Dir().shorts(274, {6}), Dir().shorts(274, {8})));
    inQuietCall([&] {
        BigTiffTagFile reader(file.name().c_str());
        reader.readAll();
        EXPECT_EQ(reader.getNumIfds(), 2U);
    });
}

}  // namespace

}  // namespace veltrace::test
