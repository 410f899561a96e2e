// The chain of directories: its order, its links, its ends.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr std::int64_t kGigabyte = std::int64_t{1} << 30;

zephra::Message badPointerSeek(const ModuleRun& run) {
    return message("ZEPHRA:veltrace:IFDSet:badNextIfdPointer",
                   "Could not seek to the next image file directory pointer, the image file \"" +
                       run.fileName() + "\" is probably corrupt.");
}

zephra::Message badDirectorySeek(const ModuleRun& run) {
    return message("ZEPHRA:veltrace:badNextIfdPointer",
                   "Could not seek to the next image file directory, some metadata in the image "
                   "file \"" +
                       run.fileName() + "\" might not have been retrieved.");
}

zephra::Message badPointerRead(const ModuleRun& run, std::uint64_t position) {
    return message("ZEPHRA:veltrace:TagFile:nextIfdOffsetReadError",
                   "Unable to read the offset value at byte position " + std::to_string(position) +
                       " to a following image file directory, the metadata in \"" + run.fileName() +
                       "\" may be corrupt.");
}

void expectOrientations(const ModuleRun& run, const std::vector<double>& orientations) {
    ASSERT_EQ(run.directories(), orientations.size());
    for (std::size_t i = 0; i < orientations.size(); ++i) {
        EXPECT_EQ(run.number({"Orientation"}, i), orientations[i]) << i;
    }
}

class Chain : public testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file_{GetParam().order, GetParam().flavour};

    TiffDirectory& addOrientation(std::uint16_t orientation) {
        return file_.addImage().shorts(274, {orientation});
    }
    static std::uint64_t offsetSize() { return GetParam().flavour == Flavour::big ? 8 : 4; }
};

INSTANTIATE_TEST_SUITE_P(Encodings, Chain, testing::ValuesIn(kEveryEncoding), encodingName);

TEST_P(Chain, OfThreeDirectoriesIsReadInOrder) {
    addOrientation(3);
    addOrientation(6);
    addOrientation(8);
    const ModuleRun run = quietRun(file_.bytes());
    expectOrientations(run, {3, 6, 8});
}

TEST_P(Chain, MayLeadBackwards) {
    auto& first = addOrientation(3).next(0);
    auto& second = addOrientation(6);
    second.next(file_.positionOf(first));
    file_.firstOffset(file_.positionOf(second));
    const ModuleRun run = quietRun(file_.bytes());
    expectOrientations(run, {6, 3});
}

TEST_P(Chain, NextPointerEqualToTheFileSizePassesAndTheCountIsFatal) {
    addOrientation(3);
    file_.image().next(file_.bytes().size());
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
    EXPECT_TRUE(run.error());
    EXPECT_FALSE(run.output());
}

TEST_P(Chain, NextPointerOnePastTheFileSizeIsAWarningAndEndsTheChain) {
    addOrientation(3);
    auto& last = addOrientation(6);
    last.next(file_.bytes().size() + 1);
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(nextPointerPastTheEnd(run.fileName())));
    EXPECT_FALSE(run.error());
    expectOrientations(run, {3, 6});
}

TEST_P(Chain, NextPointerIsUnsigned32BitsWide) {
    addOrientation(3).next(0xFFFF'FFFF);
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(nextPointerPastTheEnd(run.fileName())));
    expectOrientations(run, {3});
}

TEST_P(Chain, TruncatedNextPointerIsAWarningWithItsPosition) {
    const auto& image = addOrientation(3);
    const std::uint64_t position = file_.entryPosition(image, 1);
    Bytes bytes = file_.bytes();
    for (std::uint64_t size = position; size < position + offsetSize(); ++size) {
        bytes.resize(size);
        const ModuleRun run(bytes);
        EXPECT_THAT(run.messages(), ElementsAre(badPointerRead(run, position)));
        EXPECT_FALSE(run.error());
        expectOrientations(run, {3});
    }
}

TEST_P(Chain, IsLostWithALaterDirectoryWithoutEntries) {
    addOrientation(3);
    const auto& empty = file_.addImage();
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(file_.positionOf(empty))));
    EXPECT_TRUE(run.error());
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

TEST_P(Chain, IsLostWithALaterTableThatIsTruncated) {
    addOrientation(3);
    addOrientation(6).statedCount(50);
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(unreadableTable("IFD table #0")));
    EXPECT_TRUE(run.error());
    EXPECT_FALSE(run.output());
}

TEST_P(Chain, TagOfSeveralDirectoriesIsOneField) {
    addOrientation(3).ascii(305, "kiln").ascii(271, "ash");
    addOrientation(6).ascii(305, "oven");
    const ModuleRun run = quietRun(file_.bytes());
    const auto names = run.fieldNames();
    EXPECT_EQ(std::ranges::count(names, "Software"), 1);
    EXPECT_EQ(names.size(), 36U);
    EXPECT_EQ(run.text({"Software"}, 0), std::string("kiln\0", 5));
    EXPECT_EQ(run.text({"Software"}, 1), std::string("oven\0", 5));
    EXPECT_FALSE(run.value({"Make"}, 1));
}

// Far links. A classic offset reaches 4 GiB; the seek to a pointer takes a signed 32-bit position.

TEST_P(Chain, DirectoryBeyondTwoGigabytesIsReadAndEndsTheChain) {
    TiffBuilder far(GetParam().order, GetParam().flavour);
    const Bytes farBytes = [&] {
        far.image().shorts(274, {6}).next(8);
        const Bytes bytes = far.bytes();
        const auto header = static_cast<std::ptrdiff_t>(far.positionOf(far.image()));
        return Bytes(bytes.begin() + header, bytes.end());
    }();
    addOrientation(3).next(3 * kGigabyte);
    const MemoryFile memory(file_.bytes());
    memory.put(3 * kGigabyte, farBytes);
    const ModuleRun run(memory);
    EXPECT_THAT(run.messages(), ElementsAre(badPointerSeek(run)));
    EXPECT_FALSE(run.error());
    expectOrientations(run, {3, 6});
}

TEST_P(Chain, PositionsBeyondTwoGigabytesArePositiveInMessages) {
    addOrientation(3).next(3 * kGigabyte);
    const MemoryFile memory(file_.bytes());
    memory.put(3 * kGigabyte, Bytes(16, 0));
    const ModuleRun run(memory);
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(3221225472)));
}

class BigChain : public testing::TestWithParam<Encoding> {};

INSTANTIATE_TEST_SUITE_P(Orders, BigChain, testing::Values(kEveryEncoding[2], kEveryEncoding[3]),
                         encodingName);

TEST_P(BigChain, NextPointerIsComparedAsASignedNumber) {
    for (const std::uint64_t next : {0x8000'0000'0000'0000U, 0xFFFF'FFFF'FFFF'FFFFU}) {
        const ModuleRun run(tiffOf(GetParam(), Dir().shorts(274, {3}).next(next)));
        EXPECT_THAT(run.messages(), ElementsAre(badDirectorySeek(run)));
        expectOrientations(run, {3});
    }
}

TEST_P(BigChain, LargestSignedNextPointerIsPastTheEnd) {
    const ModuleRun run(tiffOf(GetParam(), Dir().shorts(274, {3}).next(0x7FFF'FFFF'FFFF'FFFF)));
    EXPECT_THAT(run.messages(), ElementsAre(nextPointerPastTheEnd(run.fileName())));
    expectOrientations(run, {3});
}

// Kept: the position of a next pointer loses its high half, so the pointer that ends this chain is
// the zero far in front of the directory, not the one behind it.
TEST_P(BigChain, PositionOfANextPointerKeepsItsLow32Bits) {
    const Bytes farBytes = tiffOf(GetParam(), Dir().shorts(274, {6}).next(16));
    const MemoryFile memory(tiffOf(GetParam(), Dir().shorts(274, {3}).next(4 * kGigabyte + 1016)));
    memory.put(4 * kGigabyte + 1000, farBytes);
    const ModuleRun run = quietRun(memory);
    expectOrientations(run, {3, 6});
}

}  // namespace

}  // namespace veltrace::test
