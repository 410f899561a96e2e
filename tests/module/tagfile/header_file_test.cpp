// TIFF and BigTIFF headers, whole and damaged.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

const zephra::Message kBadSeek =
    message("ZEPHRA:veltrace:badTiffHeaderIfdOffset",
            "Could not seek to position specified by TIFF header offset pointer,  the image may be "
            "corrupt.\n");
const zephra::Message kBadBigSeek =
    message("ZEPHRA:veltrace:bigTiff:badTiffHeaderIfdOffset", kBadSeek.text);

constexpr std::int64_t kTwoGigabytes = std::int64_t{1} << 31;
constexpr std::int64_t kFourGigabytes = std::int64_t{1} << 32;

Bytes headerAlone(Encoding encoding, std::uint64_t firstOffset) {
    return TiffBuilder(encoding.order, encoding.flavour).firstOffset(firstOffset).bytes();
}

Bytes firstBytes(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// A directory with Orientation (274) and nothing after it, as it stands in a file.
Bytes rotatedDirectory(Encoding encoding, std::uint16_t orientation) {
    const Bytes bytes = tiffOf(encoding, Dir().shorts(274, {orientation}));
    return {bytes.begin() + (encoding.flavour == Flavour::big ? 16 : 8), bytes.end()};
}

class Header : public testing::TestWithParam<Encoding> {
protected:
    static bool isBig() { return GetParam().flavour == Flavour::big; }
    static std::uint64_t size() { return isBig() ? 16 : 8; }
    static std::string identifier(const std::string& name) {
        return "ZEPHRA:veltrace:" + std::string(isBig() ? "bigTiff:" : "") + name;
    }
};

INSTANTIATE_TEST_SUITE_P(Encodings, Header, testing::ValuesIn(kEveryEncoding), encodingName);

TEST_P(Header, LeadsToADirectoryAnywhereInTheFile) {
    const Bytes gap(100, 0xEE);
    expectOrientation(ModuleRun(headerAlone(GetParam(), size() + gap.size()) + gap +
                                rotatedDirectory(GetParam(), 6)),
                      6);
}

TEST_P(Header, FirstOffsetEqualToTheFileSizePassesAndTheCountFails) {
    const ModuleRun run(headerAlone(GetParam(), size()));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
}

TEST_P(Header, FirstOffsetOnePastTheFileSizeFailsWithPositionAndSizeInTheMessage) {
    const ModuleRun run(headerAlone(GetParam(), size() + 1));
    EXPECT_THAT(
        run.messages(),
        ElementsAre(message(identifier("badTiffIfdOffset"),
                            "The indicated starting byte of the first image file directory "
                            "(" +
                                std::to_string(size() + 1) + ") exceeds the image file size (" +
                                std::to_string(size()) + "), the image may be corrupt.")));
    EXPECT_FALSE(run.output());
}

TEST_P(Header, FirstOffsetIsUnsigned32BitsWide) {
    const ModuleRun run(headerAlone(GetParam(), 0xFFFF'FFFF));
    EXPECT_THAT(run.messages(),
                ElementsAre(message(identifier("badTiffIfdOffset"),
                                    "The indicated starting byte of the first image file directory "
                                    "(4294967295) exceeds the image file size (" +
                                        std::to_string(size()) + "), the image may be corrupt.")));
}

TEST_P(Header, DirectoryJustBelowTwoGigabytesIsReached) {
    const std::int64_t position = kTwoGigabytes - 100;
    const MemoryFile file(headerAlone(GetParam(), static_cast<std::uint64_t>(position)));
    file.put(position, rotatedDirectory(GetParam(), 6));
    expectOrientation(ModuleRun(file), 6);
}

// Kept: the seek takes a signed 32-bit position.
TEST_P(Header, DirectoryAtTwoGigabytesCannotBeSought) {
    const MemoryFile file(headerAlone(GetParam(), kTwoGigabytes));
    file.put(kTwoGigabytes, rotatedDirectory(GetParam(), 6));
    const ModuleRun run(file);
    EXPECT_THAT(run.messages(), ElementsAre(isBig() ? kBadBigSeek : kBadSeek));
}

TEST(BigHeader, FirstOffsetBeyondFourGigabytesLosesItsHighHalf) {
    const Encoding big{Order::little, Flavour::big};
    const MemoryFile file(headerAlone(big, kFourGigabytes + 16) + rotatedDirectory(big, 6));
    file.put(kFourGigabytes + 16, rotatedDirectory(big, 8));
    expectOrientation(ModuleRun(file), 6);
}

TEST(BigHeader, FirstOffsetIsComparedAndSoughtAsASignedNumber) {
    const ModuleRun run(headerAlone({Order::little, Flavour::big}, 0xFFFF'FFFF'FFFF'FFFF));
    EXPECT_THAT(run.messages(), ElementsAre(kBadBigSeek));
}

TEST(BigHeader, LargestSignedFirstOffsetStandsInTheMessage) {
    const ModuleRun run(headerAlone({Order::big, Flavour::big}, 0x7FFF'FFFF'FFFF'FFFF));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:bigTiff:badTiffIfdOffset",
                                    "The indicated starting byte of the first image file directory "
                                    "(9223372036854775807) exceeds the image file size (16), the "
                                    "image may be corrupt.")));
}

class BigHeaderWords : public testing::TestWithParam<Encoding> {};

INSTANTIATE_TEST_SUITE_P(Orders, BigHeaderWords,
                         testing::Values(kEveryEncoding[2], kEveryEncoding[3]), encodingName);

TEST_P(BigHeaderWords, OffsetSizeAndPaddingAreNotLookedAtAndEntriesKeepTheirLayout) {
    Bytes file = headerAlone(GetParam(), 16) + rotatedDirectory(GetParam(), 6);
    for (const Bytes& words :
         {Bytes{4, 0, 0, 0}, Bytes{8, 0, 1, 0}, Bytes{0xFF, 0xFF, 0xFF, 0xFF}}) {
        std::ranges::copy(words, file.begin() + 4);
        expectOrientation(ModuleRun(file), 6);
    }
}

// Truncation

const zephra::Message kBadBigOffsetRead =
    message("ZEPHRA:veltrace:bigTiff:badTiffHeaderOffsetRead",
            "Could not read the location of the first TIFF tag table, the image may be corrupt.");
const zephra::Message kBadOffsetSizeRead =
    message("ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
            "Could not read offset size in the TIFF header, the image may be corrupt.");
// Kept: shares the identifier of the offset size.
const zephra::Message kBadPaddingRead =
    message("ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
            "Could not read Big TIFF header padding, the image may be corrupt.");

struct Truncation {
    const char* name;
    Flavour flavour;
    std::size_t shortest;
    std::size_t longest;
    zephra::Message message;
};

class TruncatedHeaderField : public testing::TestWithParam<Truncation> {};

INSTANTIATE_TEST_SUITE_P(
    Fields, TruncatedHeaderField,
    testing::Values(Truncation{"ClassicFirstOffset", Flavour::classic, 4, 7,
                               unreadableFirstOffset()},
                    Truncation{"BigOffsetSize", Flavour::big, 4, 5, kBadOffsetSizeRead},
                    Truncation{"BigPadding", Flavour::big, 6, 7, kBadPaddingRead},
                    Truncation{"BigFirstOffset", Flavour::big, 8, 15, kBadBigOffsetRead}),
    [](const auto& test) { return test.param.name; });

TEST(TruncatedHeader, ClassicFileOfSixBytesFailsInItsFirstOffset) {
    const ModuleRun run(Bytes{'I', 'I', 42, 0, 8, 0});
    EXPECT_THAT(run.messages(), ElementsAre(unreadableFirstOffset()));
}

TEST(TruncatedHeader, BigTiffFileOfSevenBytesFailsInItsPaddingUnderTheNameOfTheOffsetSize) {
    const ModuleRun run(Bytes{'I', 'I', 43, 0, 8, 0, 0});
    EXPECT_THAT(run.messages(), ElementsAre(kBadPaddingRead));
}

TEST_P(TruncatedHeaderField, EndsTheReadWithTheMessageOfItsField) {
    for (const Order order : {Order::little, Order::big}) {
        const Bytes whole = headerAlone({order, GetParam().flavour}, 0);
        for (std::size_t size = GetParam().shortest; size <= GetParam().longest; ++size) {
            const ModuleRun run(firstBytes(whole, size));
            EXPECT_THAT(run.messages(), ElementsAre(GetParam().message)) << size;
            EXPECT_FALSE(run.output());
        }
    }
}

}  // namespace

}  // namespace veltrace::test
