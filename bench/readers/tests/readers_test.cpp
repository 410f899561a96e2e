// What each reader delivers of files whose entries are counted by hand.
#include "readers/readers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/generated_files.h"
#include "support/memory_file.h"

namespace veltrace::bench {

// What a failing comparison shows.
void PrintTo(const Delivered& delivered, std::ostream* stream) {
    *stream << delivered.directories << " directories, " << delivered.entries << " entries, "
            << delivered.values << " values, " << delivered.refused << " refused";
}

namespace {

using test::MemoryFile;

// The image directory of a photograph has 10 entries with 6 numbers, two of them pointers. Exif has
// 24 with 286 numbers, 256 of them in the maker note, and GPS 8 with 12.
constexpr Delivered kPhotograph{.directories = 3, .entries = 42, .values = 304, .refused = 0};
// Six more entries with one number each.
constexpr Delivered kWholePhotograph{.directories = 3, .entries = 48, .values = 310, .refused = 0};

Delivered countedBy(const std::unique_ptr<Reader>& reader, const Bytes& bytes) {
    const MemoryFile file(bytes);
    return reader->count(file.name());
}

std::unique_ptr<Reader> module() {
    return veltraceReader(VELTRACE_MODULE_PATH);
}

TEST(Veltrace, CountsWhatIsInTheFile) {
    EXPECT_EQ(countedBy(module(), photograph(Order::little, 1)), kPhotograph);
    EXPECT_EQ(countedBy(module(), jpegPhotograph(Order::big, 1)), kPhotograph);
    EXPECT_EQ(countedBy(module(), wholePhotograph(Order::big, 1)), kWholePhotograph);
}

TEST(Veltrace, CountsEveryDirectoryOfAChainAndOfANest) {
    const Delivered pages{.directories = 3, .entries = 36, .values = 36, .refused = 0};
    EXPECT_EQ(countedBy(module(), chain(3)), pages);
    // Three pointers and one value.
    const Delivered nest{.directories = 4, .entries = 4, .values = 1, .refused = 0};
    EXPECT_EQ(countedBy(module(), nesting(3)), nest);
}

TEST(Veltrace, RefusesWhatIsNoImage) {
    EXPECT_EQ(countedBy(module(), test::bytesOf("no image")), refusal());
}

TEST(Veltrace, IsRefusedAChainThatGoesInCircles) {
    Bytes circle = chain(1);
    // The link behind the 12 entries: to the first directory, at 8.
    circle[8 + 2 + 12 * 12] = 8;
    EXPECT_EQ(countedBy(minimalReader(), circle), refusal());
    EXPECT_EQ(countedBy(module(), circle), refusal());
}

TEST(Minimal, CountsWhatIsInTheFile) {
    EXPECT_EQ(countedBy(minimalReader(), photograph(Order::little, 1)), kPhotograph);
    EXPECT_EQ(countedBy(minimalReader(), jpegPhotograph(Order::big, 1)), kPhotograph);
    EXPECT_EQ(countedBy(minimalReader(), wholePhotograph(Order::big, 1)), kWholePhotograph);
    // Of its 12 entries one has three numbers.
    const Delivered page{.directories = 1, .entries = 12, .values = 14, .refused = 0};
    EXPECT_EQ(countedBy(minimalReader(), bigPage()), page);
}

TEST(Libtiff, AnswersForThreeEntriesThatAreNotThere) {
    // PlanarConfiguration and YResolution are made up, two pointers count as values, and of the
    // three numbers of BitsPerSample it tells one.
    const Delivered expected{.directories = 3, .entries = 50, .values = 312, .refused = 0};
    EXPECT_EQ(countedBy(libtiffReader(), wholePhotograph(Order::little, 1)), expected);
    EXPECT_EQ(countedBy(unmappedLibtiffReader(), wholePhotograph(Order::big, 1)), expected);
}

TEST(Libtiff, ReadsEveryPageAndBigTiff) {
    // Each page has PlanarConfiguration on top.
    const Delivered pages{.directories = 3, .entries = 39, .values = 39, .refused = 0};
    EXPECT_EQ(countedBy(libtiffReader(), chain(3)), pages);
    const Delivered page{.directories = 1, .entries = 13, .values = 13, .refused = 0};
    EXPECT_EQ(countedBy(libtiffReader(), bigPage()), page);
}

TEST(Libtiff, RefusesAnImageWithoutPixels) {
    EXPECT_EQ(countedBy(libtiffReader(), photograph(Order::little, 1)), refusal());
}

TEST(Libexif, HasNoEntriesForPointers) {
    const Delivered expected{.directories = 3, .entries = 40, .values = 304, .refused = 0};
    EXPECT_EQ(countedBy(libexifReader(), jpegPhotograph(Order::little, 1)), expected);
    EXPECT_EQ(countedBy(libexifReader(), jpegPhotograph(Order::big, 1)), expected);
}

TEST(Exiv2, HasNumbersForPointers) {
    const Delivered expected{.directories = 3, .entries = 42, .values = 306, .refused = 0};
    EXPECT_EQ(countedBy(exiv2Reader(), jpegPhotograph(Order::little, 1)), expected);
    EXPECT_EQ(countedBy(exiv2Reader(), photograph(Order::big, 1)), expected);
}

TEST(Exiv2, RefusesWhatIsNoImage) {
    EXPECT_EQ(countedBy(exiv2Reader(), test::bytesOf("no image")), refusal());
}

TEST(Bare, DeliversNothing) {
    EXPECT_EQ(countedBy(bareFloor(), photograph(Order::little, 1)), Delivered{});
    EXPECT_EQ(bareFloor()->count("/no such file"), refusal());
}

TEST(Format, IsToldByTheFirstBytes) {
    EXPECT_EQ(formatOf(MemoryFile(jpegPhotograph(Order::big, 1)).name()), Format::jpeg);
    EXPECT_EQ(formatOf(MemoryFile(photograph(Order::big, 1)).name()), Format::classicTiff);
    EXPECT_EQ(formatOf(MemoryFile(photograph(Order::little, 1)).name()), Format::classicTiff);
    EXPECT_EQ(formatOf(MemoryFile(bigPage()).name()), Format::bigTiff);
    EXPECT_EQ(formatOf(MemoryFile(test::bytesOf("II")).name()), Format::other);
    EXPECT_EQ(formatOf("/no such file"), Format::other);
}

}  // namespace

}  // namespace veltrace::bench
