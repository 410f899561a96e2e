// The order of a directory's tags, and which of them are shared.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "ifd/known_tags.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::uint16_t> kBaseline{254, 258, 259, 263, 266, 273, 274, 277, 278, 279, 280,
                                           281, 282, 283, 284, 290, 296, 320, 322, 323, 324, 325};

std::vector<std::uint16_t> idsOf(const auto& tags) {
    std::vector<std::uint16_t> ids;
    for (const TiffTag& tag : tags) {
        ids.push_back(tag.tagId());
    }
    return ids;
}

std::vector<const TiffTag*> standInsOf(const KnownTags& tags) {
    std::vector<const TiffTag*> standIns;
    tags.visitStandIns([&](const TiffTag& tag) { standIns.push_back(&tag); });
    return standIns;
}

/// As a directory would have read it. No stand-in is of an Exif directory, so it can be told from
/// them.
TiffTag readTag(std::uint16_t tagId) {
    return {tagId, IfdId::exif};
}

/// Two tags that were read, in no order, and five stand-ins, two of which are its own.
KnownTags mixedTags() {
    KnownTags tags;
    tags.append(readTag(282));
    tags.append(readTag(259));
    tags.appendSharedStandIn(0);                      // 254
    tags.appendStandIn({258, IfdId::image, 3U});      // three samples
    tags.appendSharedStandIn(6);                      // 274
    tags.appendStandIn({281, IfdId::image, {8, 4}});  // of 8 and 4 bits
    tags.appendSharedStandIn(21);                     // 325
    return tags;
}

TEST(KnownTags, AreNoneAtFirst) {
    const KnownTags tags;
    EXPECT_TRUE(tags.empty());
    EXPECT_EQ(tags.size(), 0U);
    EXPECT_EQ(tags.begin(), tags.end());
    EXPECT_THAT(tags.read(), IsEmpty());
    EXPECT_THAT(standInsOf(tags), IsEmpty());
}

TEST(KnownTags, AreThoseReadInFileOrderAndThenStandInsInBaselineOrder) {
    const KnownTags tags = mixedTags();
    const std::vector<std::uint16_t> expected{282, 259, 254, 258, 274, 281, 325};
    EXPECT_FALSE(tags.empty());
    ASSERT_EQ(tags.size(), 7U);
    EXPECT_EQ(idsOf(tags), expected);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(tags[i].tagId(), expected[i]);
        EXPECT_EQ(tags[i].ifdId(), i < 2 ? IfdId::exif : IfdId::image);
    }
    EXPECT_EQ(&tags.front(), &tags[0]);
    EXPECT_THAT(tags[3].outputValues(), ElementsAre(1, 1, 1));
    EXPECT_THAT(tags[5].outputValues(), ElementsAre(255, 15));
}

TEST(KnownTags, TellApartTheReadOnesAndTheStandIns) {
    KnownTags tags = mixedTags();
    EXPECT_THAT(idsOf(tags.read()), ElementsAre(282, 259));
    EXPECT_THAT(idsOf(std::as_const(tags).read()), ElementsAre(282, 259));
    EXPECT_THAT(standInsOf(tags), ElementsAre(&tags[2], &tags[3], &tags[4], &tags[5], &tags[6]));
    tags.read()[1] = readTag(325);
    EXPECT_THAT(idsOf(tags), ElementsAre(282, 325, 254, 258, 274, 281, 325));
}

TEST(KnownTags, MayBeOnlyReadOnes) {
    KnownTags tags;
    tags.reserve(kBaseline.size());
    tags.append(readTag(325));
    tags.append(readTag(254));
    tags.append(readTag(325));
    EXPECT_THAT(idsOf(tags), ElementsAre(325, 254, 325));
    EXPECT_THAT(idsOf(tags.read()), ElementsAre(325, 254, 325));
    EXPECT_THAT(standInsOf(tags), IsEmpty());
}

TEST(KnownTags, MayBeOnlyStandInsOfTheirOwn) {
    KnownTags tags;
    tags.appendStandIn({258, IfdId::image, 2U});
    tags.appendStandIn({281, IfdId::image, {1, 1}});
    EXPECT_THAT(idsOf(tags), ElementsAre(258, 281));
    EXPECT_THAT(tags.read(), IsEmpty());
    EXPECT_THAT(standInsOf(tags), ElementsAre(&tags[0], &tags[1]));
    EXPECT_EQ(tags.front().tagId(), 258);
}

TEST(KnownTags, MayBeOneSharedStandInForEachBaselineTag) {
    KnownTags tags;
    for (std::size_t i = 0; i < kBaseline.size(); ++i) {
        tags.appendSharedStandIn(i);
        EXPECT_EQ(tags.size(), i + 1);
    }
    EXPECT_THAT(idsOf(tags), ElementsAreArray(kBaseline));
    EXPECT_EQ(tags.front().tagId(), 254);
    EXPECT_THAT(tags.read(), IsEmpty());
}

// Those of TIFF 6.0 for a bilevel image; 290 says hundredths, and the ResolutionUnit is none here.
TEST(SharedStandIn, HasTheDefaultOfItsTag) {
    const std::map<std::uint16_t, double> defaults{
        {254, 0},          {258, 1}, {259, 1}, {263, 1}, {266, 1},    {274, 1}, {277, 1},
        {278, 4294967295}, {280, 0}, {281, 1}, {284, 1}, {290, 0.01}, {296, 1}};
    KnownTags tags;
    for (std::size_t i = 0; i < kBaseline.size(); ++i) {
        tags.appendSharedStandIn(i);
        const auto expected = defaults.find(kBaseline[i]);
        EXPECT_EQ(tags[i].firstValue(),
                  expected == defaults.end() ? std::nullopt : std::optional(expected->second))
            << kBaseline[i];
        EXPECT_EQ(tags[i].ifdId(), IfdId::image);
    }
}

TEST(SharedStandIn, IsTheSameObjectInEveryDirectory) {
    const KnownTags one = mixedTags();
    KnownTags other;
    other.appendSharedStandIn(0);
    other.appendSharedStandIn(6);
    EXPECT_EQ(&one[2], &other[0]);
    EXPECT_EQ(&one[4], &other[1]);
    const KnownTags twin = mixedTags();
    EXPECT_EQ(&one[6], &twin[6]);
    for (const std::size_t own : {0U, 1U, 3U, 5U}) {
        EXPECT_NE(&one[own], &twin[own]);
    }
}

TEST(CopyOfKnownTags, HasItsOwnOfAllButTheSharedOnes) {
    std::optional<KnownTags> original = mixedTags();
    KnownTags copy = *original;
    for (const std::size_t own : {0U, 1U, 3U, 5U}) {
        EXPECT_NE(&copy[own], &(*original)[own]);
    }
    for (const std::size_t shared : {2U, 4U, 6U}) {
        EXPECT_EQ(&copy[shared], &(*original)[shared]);
    }
    original->read()[0] = readTag(290);
    original.reset();
    EXPECT_THAT(idsOf(copy), ElementsAre(282, 259, 254, 258, 274, 281, 325));
    EXPECT_THAT(copy[5].outputValues(), ElementsAre(255, 15));
}

TEST(IteratorOfKnownTags, StepsThroughTheSameTags) {
    const KnownTags tags = mixedTags();
    KnownTags::Iterator place = tags.begin();
    EXPECT_EQ((*place).tagId(), 282);
    EXPECT_EQ((*++ ++place).tagId(), 254);
    EXPECT_EQ(&*place, &tags[2]);
    EXPECT_FALSE(place == tags.end());
    EXPECT_FALSE(tags.begin() == mixedTags().begin());
}

}  // namespace

}  // namespace veltrace::test
