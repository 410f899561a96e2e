#include "render/field_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace veltrace::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Wanted = FieldSelection::Wanted;

TEST(FieldSelection, WithoutPathsWantsEverythingWhole) {
    const FieldSelection selection({});
    EXPECT_TRUE(selection.root().isPlain());
    const auto field = FieldSelection::field(selection.root(), "Width");
    EXPECT_EQ(field.wanted, Wanted::whole);
    EXPECT_TRUE(field.inside.isPlain());
    EXPECT_THAT(field.indices, IsEmpty());
}

TEST(FieldSelection, WantsANamedFieldWholeAndNoOther) {
    const FieldSelection selection({"Width", "Make"});
    const auto make = FieldSelection::field(selection.root(), "Make");
    EXPECT_EQ(make.wanted, Wanted::whole);
    EXPECT_TRUE(make.inside.isPlain());
    EXPECT_THAT(make.indices, ElementsAre(1));
    EXPECT_THAT(FieldSelection::field(selection.root(), "Width").indices, ElementsAre(0));
    for (const auto* const other : {"Mak", "Maker", "Model", "", "width"}) {
        const auto field = FieldSelection::field(selection.root(), other);
        EXPECT_EQ(field.wanted, Wanted::no) << other;
        EXPECT_THAT(field.indices, IsEmpty()) << other;
    }
}

TEST(FieldSelection, WantsTheDirectoryOfANestedFieldPartly) {
    const FieldSelection selection({"DigitalCamera.ExposureTime", "DigitalCamera.A.B"});
    const auto camera = FieldSelection::field(selection.root(), "DigitalCamera");
    EXPECT_EQ(camera.wanted, Wanted::partly);
    EXPECT_THAT(camera.indices, IsEmpty());
    const auto exposure = FieldSelection::field(camera.inside, "ExposureTime");
    EXPECT_EQ(exposure.wanted, Wanted::whole);
    EXPECT_THAT(exposure.indices, ElementsAre(0));
    const auto a = FieldSelection::field(camera.inside, "A");
    EXPECT_EQ(a.wanted, Wanted::partly);
    EXPECT_THAT(FieldSelection::field(a.inside, "B").indices, ElementsAre(1));
    EXPECT_EQ(FieldSelection::field(camera.inside, "FNumber").wanted, Wanted::no);
    EXPECT_EQ(FieldSelection::field(selection.root(), "ExposureTime").wanted, Wanted::no);
}

TEST(FieldSelection, FindsNamedFieldsWithinAWholeDirectory) {
    const FieldSelection selection({"GPSInfo.GPSLatitude", "GPSInfo"});
    const auto gps = FieldSelection::field(selection.root(), "GPSInfo");
    EXPECT_EQ(gps.wanted, Wanted::whole);
    EXPECT_THAT(gps.indices, ElementsAre(1));
    const auto latitude = FieldSelection::field(gps.inside, "GPSLatitude");
    EXPECT_EQ(latitude.wanted, Wanted::whole);
    EXPECT_THAT(latitude.indices, ElementsAre(0));
    const auto altitude = FieldSelection::field(gps.inside, "GPSAltitude");
    EXPECT_EQ(altitude.wanted, Wanted::whole);
    EXPECT_TRUE(altitude.inside.isPlain());
    EXPECT_THAT(altitude.indices, IsEmpty());
}

TEST(FieldSelection, AFieldNamedTwiceHasBothIndices) {
    const FieldSelection selection({"Make", "Width", "Make"});
    EXPECT_EQ(selection.size(), 3U);
    EXPECT_THAT(FieldSelection::field(selection.root(), "Make").indices, ElementsAre(0, 2));
}

TEST(FieldSelection, APathWithAnEmptyPartIsNotOneWithout) {
    const FieldSelection selection({"Make.", ".Width", ""});
    const auto make = FieldSelection::field(selection.root(), "Make");
    EXPECT_EQ(make.wanted, Wanted::partly);
    EXPECT_EQ(FieldSelection::field(make.inside, "Width").wanted, Wanted::no);
    EXPECT_EQ(FieldSelection::field(selection.root(), "Width").wanted, Wanted::no);
}

TEST(SeenFields, ReturnsTheFieldsFoundInTheOrderOfTheSelection) {
    const FieldSelection selection({"Make", "Width", "Make", "Model"});
    SeenFields seen(selection);
    EXPECT_THAT(seen.indices(), IsEmpty());
    seen.add(FieldSelection::field(selection.root(), "Model"));
    seen.add(FieldSelection::field(selection.root(), "Make"));
    seen.add(FieldSelection::field(selection.root(), "Height"));
    EXPECT_THAT(seen.indices(), ElementsAre(0, 2, 3));
}

TEST(SeenFields, AcceptsOnlyListsThatItCanReturn) {
    const FieldSelection selection({"Make", "Width", "Model"});
    using Indices = std::vector<std::uint32_t>;
    EXPECT_TRUE(areIndicesOf(selection, Indices{}));
    EXPECT_TRUE(areIndicesOf(selection, Indices{0, 2}));
    EXPECT_FALSE(areIndicesOf(selection, Indices{3}));
    EXPECT_FALSE(areIndicesOf(selection, Indices{1, 0}));
    EXPECT_FALSE(areIndicesOf(selection, Indices{1, 1}));
    EXPECT_FALSE(areIndicesOf(FieldSelection({}), Indices{0}));
}

}  // namespace
}  // namespace veltrace::cli
