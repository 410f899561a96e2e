// The mutator: that every change stays in its bounds and is made where it says.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "mutation/tiff_map.h"
#include "mutation/tiff_mutation.h"
#include "support/tiff_builder.h"
#include "sweep/seeds.h"

namespace veltrace::fuzz {

namespace {

using test::Flavour;
using test::Order;
using test::TiffBuilder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Two images, of which the first has an Exif directory: entries at 10, 22, 34 and so on.
Bytes sample(Order order = Order::little, Flavour flavour = Flavour::classic) {
    TiffBuilder file(order, flavour);
    auto& exif = file.child().shorts(37383, {5});
    file.image().shorts(256, {6}).longs(305, {1, 2, 3}).sub(34665, exif);
    file.addImage().shorts(257, {4});
    return file.bytes();
}

/// The positions at which two files of one size differ, over many seeds of one change.
std::vector<std::size_t> placesOf(TiffMutation::Change change, const Bytes& before) {
    std::vector<bool> differs(before.size());
    for (unsigned seed = 1; seed <= 500; ++seed) {
        Random random(seed);
        TiffMutation mutation(before, before.size(), random);
        (mutation.*change)();
        for (std::size_t i = 0; i < before.size(); ++i) {
            differs[i] = differs[i] || mutation.bytes().at(i) != before[i];
        }
    }
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (differs[i]) {
            places.push_back(i);
        }
    }
    return places;
}

// Tables at 8 (3 entries), 62 (1 entry) and 80 (1 entry); the three longs between them are at 50.
TEST(TiffMap, FindsTheDirectoriesOfAChainAndOfPointers) {
    for (const Order order : {Order::little, Order::big}) {
        const TiffMap map(sample(order));
        ASSERT_THAT(map.tables(), SizeIs(3));
        EXPECT_EQ(map.tables()[0].position, 8U);
        EXPECT_EQ(map.tables()[0].entries, 3U);
        EXPECT_EQ(map.tables()[1].position, 80U);
        EXPECT_EQ(map.tables()[2].position, 62U);
    }
}

TEST(TiffMap, FindsThemInBigTiff) {
    for (const Order order : {Order::little, Order::big}) {
        const TiffMap map(sample(order, Flavour::big));
        ASSERT_THAT(map.tables(), SizeIs(3));
        EXPECT_EQ(map.tables()[0].position, 16U);
        EXPECT_EQ(map.tables()[0].entries, 3U);
    }
}

TEST(TiffMap, FindsThemBehindTheExifIdentifierOfJpeg) {
    const TiffMap map(test::jpegWithExif(sample()));
    EXPECT_EQ(map.header(), 12U);
    ASSERT_THAT(map.tables(), SizeIs(3));
    EXPECT_EQ(map.tables()[0].position, 20U);
}

TEST(TiffMap, FindsEachDirectoryOfALoopOnce) {
    TiffBuilder file;
    file.image().shorts(256, {1}).next(8);
    EXPECT_THAT(TiffMap(file.bytes()).tables(), SizeIs(1));
}

TEST(TiffMap, FindsNothingInOtherBytes) {
    EXPECT_THAT(TiffMap({}).tables(), IsEmpty());
    EXPECT_THAT(TiffMap(Bytes(7, 0xFF)).tables(), IsEmpty());
    EXPECT_THAT(TiffMap({0xFF, 0xD8}).tables(), IsEmpty());
}

TEST(TiffMap, KnowsWhereAValueIs) {
    const Bytes bytes = sample();
    const TiffMap map(bytes);
    EXPECT_EQ(map.value(bytes, 10), 18U) << "inside";
    EXPECT_EQ(map.value(bytes, 22), 50U) << "behind the table";
}

TEST(TiffMutation, ChangesOnlyTheNumberItNames) {
    const Bytes bytes = sample();
    EXPECT_THAT(placesOf(&TiffMutation::changeTag, bytes),
                ElementsAre(10, 11, 22, 23, 34, 35, 64, 65, 82, 83));
    EXPECT_THAT(placesOf(&TiffMutation::changeType, bytes),
                ElementsAre(12, 13, 24, 25, 36, 37, 66, 67, 84, 85));
    EXPECT_THAT(placesOf(&TiffMutation::changeCount, bytes),
                ElementsAre(14, 15, 16, 17, 26, 27, 28, 29, 38, 39, 40, 41, 68, 69, 70, 71, 86, 87,
                            88, 89));
    EXPECT_THAT(placesOf(&TiffMutation::changeEntryCount, bytes),
                ElementsAre(8, 9, 62, 63, 80, 81));
    EXPECT_THAT(placesOf(&TiffMutation::pointFirst, bytes), ElementsAre(4, 5, 6, 7));
    EXPECT_THAT(placesOf(&TiffMutation::pointNext, bytes),
                ElementsAre(46, 47, 48, 49, 76, 77, 78, 79, 94, 95, 96, 97));
    EXPECT_THAT(placesOf(&TiffMutation::flipByteOrder, bytes), ElementsAre(0, 1));
}

TEST(TiffMutation, PointsEntriesAtDirectoriesThatThereAre) {
    const Bytes bytes = sample();
    std::vector<bool> reached(bytes.size());
    for (unsigned seed = 1; seed <= 500; ++seed) {
        Random random(seed);
        TiffMutation mutation(bytes, bytes.size(), random);
        ASSERT_TRUE(mutation.pointEntry());
        for (const std::size_t entry : {10U, 22U, 34U, 64U, 82U}) {
            const TiffMap map(bytes);
            const std::uint64_t tag = map.number(mutation.bytes(), entry, 2);
            const std::uint64_t offset = map.number(mutation.bytes(), entry + 8, 4);
            if (std::ranges::find(kPointerTags, tag) != std::end(kPointerTags) &&
                offset < reached.size()) {
                reached[offset] = true;
            }
        }
    }
    EXPECT_TRUE(reached[8]) << "its own directory";
    EXPECT_TRUE(reached[62]) << "another";
    EXPECT_TRUE(reached[80]) << "a child";
}

TEST(TiffMutation, RemovesAnEntryAndLeavesTheRestWhereItWas) {
    TiffBuilder file;
    file.image().shorts(256, {6}).shorts(257, {4});
    const Bytes before = file.bytes();
    Random random(1);
    TiffMutation mutation(before, before.size(), random);
    ASSERT_TRUE(mutation.removeEntry());
    const TiffMap map(mutation.bytes());
    ASSERT_THAT(map.tables(), SizeIs(1));
    EXPECT_EQ(map.tables()[0].entries, 1U);
    EXPECT_EQ(mutation.bytes().size(), before.size());
    EXPECT_EQ(map.number(mutation.bytes(), map.next(map.tables()[0]), 4), 0U) << "the chain ends";
}

TEST(TiffMutation, AppendsACopyOfATableThatIsReached) {
    const Bytes before = sample();
    std::size_t found = 0;
    for (unsigned seed = 1; seed <= 50; ++seed) {
        Random random(seed);
        TiffMutation mutation(before, 4096, random);
        ASSERT_TRUE(mutation.appendTable());
        const TiffMap map(mutation.bytes());
        found += std::ranges::count(map.tables(), before.size(), &Table::position) > 0 ? 1U : 0U;
    }
    EXPECT_GT(found, 40U);
}

TEST(TiffMutation, LeavesAFileAloneThatHasNothingOfTheKind) {
    Random random(1);
    TiffMutation mutation({'x'}, 16, random);
    EXPECT_FALSE(mutation.changeTag());
    EXPECT_FALSE(mutation.pointFirst());
    EXPECT_FALSE(mutation.insertSegment());
    EXPECT_EQ(mutation.bytes(), Bytes{'x'});
}

TEST(Mutated, StaysWithinTheSizeAndChangesMostSeeds) {
    std::size_t files = 0;
    std::size_t changed = 0;
    for (const test::Seed& seed : test::seeds()) {
        for (const Bytes& content : {seed.little, seed.big}) {
            for (const std::size_t room : {0U, 1U, 300U}) {
                for (unsigned number = 1; number <= 100; ++number) {
                    Random random(number);
                    const Bytes after = mutated(content, content.size() + room, random);
                    ASSERT_LE(after.size(), content.size() + room);
                    ++files;
                    changed += after != content ? 1U : 0U;
                }
            }
        }
    }
    EXPECT_GT(changed * 10, files * 8) << changed << " of " << files;
}

TEST(Mutated, DependsOnTheSeedAlone) {
    const Bytes bytes = sample();
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Random first(seed);
        Random second(seed);
        EXPECT_EQ(mutated(bytes, 512, first), mutated(bytes, 512, second));
    }
}

}  // namespace

}  // namespace veltrace::fuzz
