// Which fields an output has, in which order, and whose values they hold.
#include <initializer_list>

#include "support/file_test.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

namespace {

using Names = std::vector<std::string>;

const Names kGeneralNames(std::begin(kGeneralFields), std::end(kGeneralFields));
const Names kBaselineNames(std::begin(kBaselineFields), std::end(kBaselineFields));

Names joined(std::initializer_list<Names> parts) {
    Names all;
    for (const Names& part : parts) {
        std::ranges::copy(part, std::back_inserter(all));
    }
    return all;
}

class FieldOrder : public ::testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file{GetParam().order, GetParam().flavour};
};

TEST_P(FieldOrder, BeginsWithTheThirtyFourDefaultNames) {
    const ModuleRun run = quietRun(tiffOf(
        GetParam(), Dir().shorts(256, {4}).shorts(257, {3}).shorts(262, {1}).shorts(259, {1})));
    EXPECT_THAT(run.dimensions({}), ElementsAre(1, 1));
    EXPECT_EQ(run.fieldNames().size(), 34U);
    EXPECT_THAT(run.fieldNames(), ElementsAreArray(joined({kGeneralNames, kBaselineNames})));
}

TEST_P(FieldOrder, GoesOnWithOtherTagsByIdAndEndsWithUnknownTags) {
    const ModuleRun run = quietRun(tiffOf(GetParam(), Dir()
                                                          .bytes(65000, {1})
                                                          .ascii(33432, "(c)")
                                                          .shorts(37383, {5})
                                                          .ascii(305, "kiln")
                                                          .shorts(259, {1})
                                                          .ascii(270, "a pot")
                                                          .shorts(255, {1})));
    EXPECT_THAT(run.fieldNames(),
                ElementsAreArray(joined({kGeneralNames,
                                         kBaselineNames,
                                         {"SubFileType", "ImageDescription", "Software",
                                          "Copyright", "MeteringMode", "UnknownTags"}})));
}

TEST_P(FieldOrder, IsTheSameForGenericSubDirectories) {
    const ModuleRun run = quietRun(
        tiffOf(GetParam(),
               Dir().nest(330, Dir().shorts(37383, {5}).ascii(305, "kiln").bytes(65000, {1}))));
    EXPECT_THAT(run.fieldNames({"SubIFDs"}),
                ElementsAreArray(joined(
                    {kGeneralNames, kBaselineNames, {"Software", "MeteringMode", "UnknownTags"}})));
}

// The check for default names looks at the format of the file, not at the kind of directory.
TEST_P(FieldOrder, LeavesTheDefaultNamesOutOfExifDirectories) {
    const ModuleRun run = quietRun(tiffOf(
        GetParam(),
        Dir().nest(34665, Dir().shorts(274, {6}).rationals(282, {{72, 1}}).shorts(37383, {5}))));
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAre("MeteringMode"));
    EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
    // Both values are made and offered all the same, and have no place.
    EXPECT_EQ(run.leftovers().arrays, 2U);
}

// Replaced directories are gone with all that is in them, but not with what never had a place.
TEST_P(FieldOrder, LeavesThemOutOfExifDirectoriesThatALaterEntryReplaces) {
    const ModuleRun run = quietRun(tiffOf(
        GetParam(), Dir()
                        .nest(330, Dir().nest(34665, Dir().shorts(274, {6}).shorts(37383, {5})))
                        .nest(330, Dir().shorts(37383, {3}))));
    EXPECT_FALSE(run.hasField({"SubIFDs", "DigitalCamera"}));
    EXPECT_EQ(run.number({"SubIFDs", "MeteringMode"}), 3);
    EXPECT_EQ(run.leftovers().arrays, 1U);
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, FieldOrder, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(JpegFieldOrder, HasTheTenGeneralNamesThenAllTagsById) {
    const ModuleRun run =
        quietRun(jpegWithExif(tiffOf(Dir()
                                         .bytes(65000, {1})
                                         .ascii(305, "kiln")
                                         .shorts(274, {6})
                                         .nest(330, Dir().shorts(274, {6}).shorts(259, {1}))
                                         .shorts(259, {6}))));
    EXPECT_THAT(run.fieldNames(),
                ElementsAreArray(joined(
                    {kGeneralNames,
                     {"Compression", "Orientation", "Software", "SubIFDs", "UnknownTags"}})));
    EXPECT_THAT(run.fieldNames({"SubIFDs"}),
                ElementsAreArray(joined({kGeneralNames, {"Compression", "Orientation"}})));
}

TEST(Fields, AreEmptyWhereOnlyAnotherOfThreeDirectoriesHasTheTag) {
    const ModuleRun run = quietRun(tiffOf(
        Dir().shorts(271, {1}), Dir().ascii(305, "kiln").shorts(271, {2}), Dir().shorts(272, {3})));
    EXPECT_THAT(run.dimensions({}), ElementsAre(3, 1));
    EXPECT_THAT(
        run.fieldNames(),
        ElementsAreArray(joined({kGeneralNames, kBaselineNames, {"Make", "Model", "Software"}})));
    EXPECT_EQ(run.number({"Make"}, 0), 1);
    EXPECT_EQ(run.number({"Make"}, 1), 2);
    EXPECT_FALSE(run.value({"Make"}, 2));
    EXPECT_FALSE(run.value({"Software"}, 0));
    EXPECT_TRUE(run.value({"Software"}, 1));
    EXPECT_FALSE(run.value({"Software"}, 2));
    EXPECT_FALSE(run.value({"Model"}, 0));
    EXPECT_EQ(run.number({"Model"}, 2), 3);
}

TEST(Fields, OfExifDirectoriesAreTheirTagsWithoutFilenameWidthAndColorType) {
    const Bytes file =
        tiffOf(Dir().nest(34665, Dir().shorts(256, {9}).shorts(37383, {5}).shorts(33434, {2})));
    for (const Bytes& bytes : {file, jpegWithExif(file)}) {
        const ModuleRun run = quietRun(bytes);
        EXPECT_EQ(run.value({"DigitalCamera"}).className(), "struct");
        EXPECT_THAT(run.dimensions({"DigitalCamera"}), ElementsAre(1, 1));
        EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAre("ExposureTime", "MeteringMode"));
    }
}

TEST(JpegFieldOrder, HasTheDefaultNamesOfTiffFilesInExifDirectories) {
    const ModuleRun jpeg(jpegWithExif(tiffOf(
        Dir().nest(34665, Dir().shorts(274, {6}).rationals(282, {{72, 1}}).shorts(37383, {5})))));
    EXPECT_EQ(jpeg.leftovers().arrays, 0U);
    EXPECT_THAT(jpeg.fieldNames({"DigitalCamera"}),
                ElementsAre("Orientation", "XResolution", "MeteringMode"));
    EXPECT_EQ(jpeg.number({"DigitalCamera", "Orientation"}), 6);
}

TEST(Fields, OfAnExifDirectoryMayAllBeMissing) {
    const ModuleRun run = quietRun(tiffOf(Dir().nest(34665, Dir().shorts(274, {6}))));
    EXPECT_EQ(run.value({"DigitalCamera"}).className(), "struct");
    EXPECT_THAT(run.dimensions({"DigitalCamera"}), ElementsAre(1, 1));
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), IsEmpty());
}

TEST(Fields, HoldTheLastOfSeveralTagsOfOneName) {
    expectShown({
        {Dir().shorts(kMake, {1}).shorts(kMake, {2}), "Make", "2"},
        {Dir().shorts(kModel, {3}).shorts(kModel, {}), "Model", "3"},
    });
}

TEST(Fields, HoldBitsPerSampleAndMaxSampleValueInARowAndOtherNumbersInAColumn) {
    expectShown({
        {Dir().shorts(258, {8, 8, 8}), "BitsPerSample", "1x3 [8 8 8]"},
        {Dir().shorts(281, {255, 254, 253}), "MaxSampleValue", "1x3 [255 254 253]"},
        {Dir().longs(273, {10, 20, 30}), "StripOffsets", "3x1 [10 20 30]"},
        {Dir().shorts(280, {0, 1, 2}), "MinSampleValue", "3x1 [0 1 2]"},
    });
}

TEST(Output, WithoutAnyFieldIsAnEmptyMatrix) {
    const ModuleRun run(jpegWithExif(tiffOf(Dir().entry(271, 0, 1, {}))));
    EXPECT_THAT(run.messages(), ElementsAre(noType(271)));
    EXPECT_EQ(run.output().className(), "double");
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST(Output, LeavesNothingBehind) {
    const ModuleRun run(tiffOf(
        Dir().shorts(271, {1, 2, 3}).bytes(65000, {1}).nest(34665, Dir().shorts(37383, {5}))));
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

}  // namespace

}  // namespace veltrace::test
