// What a reader knows after its header, and failures that no file can cause.
#include <gmock/gmock.h>
#include <memory>

#include "support/memory_file.h"
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

using testing::ElementsAre;

template <class Reader>
std::unique_ptr<TagFile> make(const char* fileName) {
    return std::make_unique<Reader>(fileName);
}

struct ReaderCase {
    const char* name;
    std::unique_ptr<TagFile> (*make)(const char* fileName);
    Flavour flavour;
    std::string versionReadIdentifier;
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

    static void expectFatal(const Bytes& bytes, const std::string& identifier,
                            const std::string& text) {
        const MemoryFile file(bytes);
        const auto reader = GetParam().make(file.name().c_str());
        EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }), message(identifier, text));
    }
};

const ReaderCase kReaders[] = {
    {"Jpeg", make<JpegTagFile>, Flavour::classic, "ZEPHRA:veltrace:badTiffHeaderVersionRead"},
    {"ClassicTiff", make<ClassicTiffTagFile>, Flavour::classic,
     "ZEPHRA:veltrace:badTiffHeaderVersionRead"},
    {"BigTiff", make<BigTiffTagFile>, Flavour::big,
     "ZEPHRA:veltrace:bigTiff:badTiffHeaderVersionRead"},
};

INSTANTIATE_TEST_SUITE_P(Readers, TiffHeader, testing::ValuesIn(kReaders),
                         [](const auto& test) { return test.param.name; });

TEST_P(TiffHeader, ClearsTheSwapFlagForIIOnALittleEndianComputer) {
    const MemoryFile file(header(Order::little));
    const auto reader = GetParam().make(file.name().c_str());
    reader->readHeader();
    EXPECT_EQ(reader->headerByteOrder(), HeaderByteOrder::little);
    EXPECT_THAT(reader->byteOrderMark(), ElementsAre('I', 'I'));
    EXPECT_FALSE(reader->swapFlag());
}

TEST_P(TiffHeader, SetsTheSwapFlagForMMOnALittleEndianComputer) {
    const MemoryFile file(header(Order::big));
    const auto reader = GetParam().make(file.name().c_str());
    reader->readHeader();
    EXPECT_EQ(reader->headerByteOrder(), HeaderByteOrder::big);
    EXPECT_THAT(reader->byteOrderMark(), ElementsAre('M', 'M'));
    EXPECT_TRUE(reader->swapFlag());
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
        const auto reader = GetParam().make(file.name().c_str());
        EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
                  message("ZEPHRA:veltrace:tiffHeaderEndianReadFailure",
                          "Could not read TIFF header byte order the image file \"" + file.name() +
                              "\" may be corrupt."));
    }
}

TEST_P(TiffHeader, TruncatedVersionIsFatal) {
    const std::string text = "Could not read TIFF header version number, the image may be corrupt.";
    expectFatal({'I', 'I'}, GetParam().versionReadIdentifier, text);
    expectFatal({'M', 'M', 0}, GetParam().versionReadIdentifier, text);
}

TEST_P(TiffHeader, ByteOrderMarkIMIsFatalAndReportedAs73And77) {
    const MemoryFile file(bytesOf("IM") + Bytes(16, 0));
    const auto reader = GetParam().make(file.name().c_str());
    EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
              message("ZEPHRA:veltrace:badEndianness",
                      "The endian signature [73 77] of \"" + file.name() +
                          "\"  is neither [77 77] (big-endian) nor [73 73] (little-endian),the "
                          "image file may be corrupt."));
}

struct MarkCase {
    Bytes mark;
    const char* numbers;
};

TEST_P(TiffHeader, AnyOtherByteOrderMarkIsFatalAndReportedInNumbers) {
    for (const auto& [mark, numbers] :
         {MarkCase{{'M', 'I'}, "[77 73]"}, MarkCase{{'i', 'i'}, "[105 105]"},
          MarkCase{{0, 0xFF}, "[0 255]"}, MarkCase{{0x80, 'M'}, "[128 77]"}}) {
        const MemoryFile file(mark + Bytes(16, 0));
        const auto reader = GetParam().make(file.name().c_str());
        EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
                  message("ZEPHRA:veltrace:badEndianness",
                          std::string("The endian signature ") + numbers + " of \"" + file.name() +
                              "\"  is neither [77 77] (big-endian) nor [73 73] (little-endian),the "
                              "image file may be corrupt."));
    }
}

// Failures that a file can cause too; here, that they are fatal.

TEST_P(TiffHeader, TruncatedFirstOffsetIsFatal) {
    Bytes bytes = header(Order::little);
    bytes.pop_back();
    const MemoryFile file(bytes);
    const auto reader = GetParam().make(file.name().c_str());
    const std::string flavour = GetParam().flavour == Flavour::big ? "bigTiff:" : "";
    EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
              message("ZEPHRA:veltrace:" + flavour + "badTiffHeaderOffsetRead",
                      "Could not read the location of the first TIFF tag table, the image may be "
                      "corrupt."));
}

TEST_P(TiffHeader, FirstOffsetPastTheEndIsFatalAndRelativeToTheHeader) {
    const Bytes bytes = header(Order::little);
    const MemoryFile file(bytesOf("kiln") + bytes);
    const auto size = static_cast<std::int64_t>(bytes.size());
    file.put(4 + size - (GetParam().flavour == Flavour::big ? 8 : 4),
             {static_cast<std::uint8_t>(size + 1)});
    const auto reader = GetParam().make(file.name().c_str());
    ASSERT_TRUE(reader->seek(4));
    const std::string flavour = GetParam().flavour == Flavour::big ? "bigTiff:" : "";
    EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
              message("ZEPHRA:veltrace:" + flavour + "badTiffIfdOffset",
                      "The indicated starting byte of the first image file directory (" +
                          std::to_string(size + 5) + ") exceeds the image file size (" +
                          std::to_string(size + 4) + "), the image may be corrupt."));
}

TEST_P(TiffHeader, StartsAtMinusOneIfThePositionIsUnknown) {
    const UnseekableFile file;
    file.feed(header(Order::little));
    const auto reader = GetParam().make(file.name().c_str());
    const bool isBig = GetParam().flavour == Flavour::big;
    EXPECT_EQ(
        fatalErrorOf([&] { reader->readHeader(); }),
        message(std::string("ZEPHRA:veltrace:") + (isBig ? "bigTiff:" : "") + "badTiffIfdOffset",
                std::string("The indicated starting byte of the first image file directory "
                            "(") +
                    (isBig ? "15" : "7") +
                    ") exceeds the image file size (0), the image may be corrupt."));
    EXPECT_EQ(reader->offsetBase(), -1);
}

TEST_P(TiffHeader, FailedSeekIsFatal) {
    const MemoryFile file(
        TiffBuilder(Order::little, GetParam().flavour).firstOffset(std::uint64_t{1} << 31).bytes());
    file.put(std::int64_t{1} << 31, {0});
    const auto reader = GetParam().make(file.name().c_str());
    const std::string flavour = GetParam().flavour == Flavour::big ? "bigTiff:" : "";
    EXPECT_EQ(fatalErrorOf([&] { reader->readHeader(); }),
              message("ZEPHRA:veltrace:" + flavour + "badTiffHeaderIfdOffset",
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
