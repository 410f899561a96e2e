// Tags that point to directories.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

class SubDirectories : public ::testing::TestWithParam<Encoding> {};

TEST_P(SubDirectories, NestUnderTheirPointers) {
    const ModuleRun run = quietRun(tiffOf(GetParam(), Dir()
                                                          .nest(330, Dir().longs(271, {1, 2, 3}))
                                                          .nest(34665, Dir().shorts(37383, {5}))
                                                          .nest(34853, Dir().bytes(0, {2, 2, 0, 0}))
                                                          .nest(40965, Dir().longs(4097, {640}))));
    EXPECT_THAT(run.numbers({"SubIFDs", "Make"}), ElementsAre(1, 2, 3));
    EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
    EXPECT_THAT(run.numbers({"GPSInfo", "GPSVersionID"}), ElementsAre(2, 2, 0, 0));
    EXPECT_EQ(run.number({"InteroperabilityIFD", "RelatedImageWidth"}), 640);
}

TEST_P(SubDirectories, LeaveTheRestOfTheirDirectoryReadable) {
    const ModuleRun run = quietRun(
        tiffOf(GetParam(), Dir().nest(34665, Dir().shorts(37383, {5})).longs(271, {7, 8, 9}),
               Dir().shorts(271, {6})));
    EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(7, 8, 9));
    EXPECT_EQ(run.number({"Make"}, 1), 6);
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, SubDirectories, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

// One entry in a classic directory: 8 bytes of header and 18 of table lie before the child.
constexpr std::uint32_t kFirstChild = 26;

TEST(SubDirectory, HasAPointerOfAnyValidType) {
    for (std::uint16_t type = 1; type <= 13; ++type) {
        TiffBuilder file;
        file.child().shorts(37383, {5});
        file.image().entryAt(34665, type, 1, kFirstChild);
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty()) << "type " << type;
        EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
    }
}

TEST(SubDirectory, OfEveryKindMayHaveAPointerOfTypeIfd) {
    for (const std::uint16_t pointer : kPointerTags) {
        TiffBuilder file;
        file.child().shorts(1, {5});
        file.image().entryAt(pointer, 13, 1, kFirstChild);
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty()) << "tag " << pointer;
    }
}

TEST(SubDirectory, IsReadOnceWhateverTheCountOfItsPointer) {
    for (const std::uint32_t count : {0U, 2U, 1000U, 0x40000001U}) {
        TiffBuilder file;
        file.child().shorts(37383, {5});
        file.image().entryAt(34665, 4, count, kFirstChild);
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty()) << "count " << count;
        EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
        EXPECT_THAT(run.dimensions({"DigitalCamera"}), ElementsAre(1, 1));
    }
}

// Two offsets are a list elsewhere in the file, and the list is taken for a directory.
TEST(SubDirectory, OfTwoOffsetsBeginsAtTheirList) {
    const ModuleRun run(tiffOf(Dir().longs(330, {0x02BC0000, 34})));
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(26)));
}

TEST(SubDirectory, OfTwoOffsetsIsReadFromTheirListAsIfItWereADirectory) {
    const Bytes listThatIsADirectory{1, 0, 0x0F, 1, 3, 0, 1, 0, 0, 0, 77, 0, 0, 0, 0, 0, 0, 0};
    const ModuleRun run =
        quietRun(tiffOf(Dir().entryAt(330, 4, 2, kFirstChild)) + listThatIsADirectory);
    EXPECT_EQ(run.number({"SubIFDs", "Make"}), 77);
}

// The offset of a published BigTIFF pointer is where entries of this layout have their value, so
// the pointer leads to the header of the file, whose first bytes count more entries than there are.
TEST(SubDirectory, OfAPublishedBigTiffPointerIsTheHeader) {
    const ModuleRun run(tiffOf({Order::little, Flavour::big},
                               Dir().entry(34665, 4, 1, {52, 0, 0, 0}).shorts(271, {7})));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableTable("the Exif sub IFD table")));
    EXPECT_EQ(run.number({"Make"}), 7);
}

TEST(SubDirectory, CountsItsPositionFromTheHeaderInsideAJpegFile) {
    const ModuleRun run =
        quietRun(jpegWithExif(tiffOf(Dir().nest(34665, Dir().longs(271, {1, 2, 3})))));
    EXPECT_THAT(run.numbers({"DigitalCamera", "Make"}), ElementsAre(1, 2, 3));
}

zephra::Message gpsNesting(const std::string& tag) {
    return message("ZEPHRA:veltrace:TiffTag:illegallyNestedIfdWithinGpsIfd",
                   "Tag id # " + tag +
                       " is illegal within the GPS subIFD.  There may have been some loss of "
                       "metadata.\n");
}

zephra::Message interoperabilityNesting(const std::string& tag) {
    return message("ZEPHRA:veltrace:TiffTag:illegallyNestedIfdWithinIopIfd",
                   "Tag id # " + tag +
                       " is illegal within the Interoperability subIFD.  There may have been some "
                       "loss of metadata.\n");
}

// A directory of one ordinary tag and all four pointers.
TiffDirectory& withAllPointers(TiffBuilder& file) {
    TiffDirectory& target = file.child().shorts(1, {4});
    return file.child()
        .sub(330, target)
        .sub(34665, target)
        .shorts(1, {3})
        .sub(34853, target)
        .sub(40965, target);
}

TEST(Nesting, OfAnExifOrAnyOtherPointerIsForbiddenInsideGpsDirectories) {
    TiffBuilder file;
    file.image().sub(34853, withAllPointers(file));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(gpsNesting("330"), gpsNesting("34665"),
                                            gpsNesting("34853"), gpsNesting("40965")));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("GPSLatitudeRef"));
    EXPECT_EQ(run.number({"GPSInfo", "GPSLatitudeRef"}), 3);
}

TEST(Nesting, OfAnyPointerIsForbiddenInsideInteroperabilityDirectories) {
    TiffBuilder file;
    file.image().sub(40965, withAllPointers(file));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(),
                ElementsAre(interoperabilityNesting("330"), interoperabilityNesting("34665"),
                            interoperabilityNesting("34853"), interoperabilityNesting("40965")));
    EXPECT_THAT(run.fieldNames({"InteroperabilityIFD"}), ElementsAre("InteroperabilityIndex"));
}

// Its warnings and errors stay untold.
TEST(Nesting, IsForbiddenBeforeTheSubDirectoryIsRead) {
    EXPECT_THAT(
        ModuleRun(
            tiffOf(Dir().nest(
                34853, Dir().nest(34665, Dir().entry(271, 0, 1, {})).entryAt(330, 4, 1, 5000))))
            .messages(),
        ElementsAre(gpsNesting("34665"), gpsNesting("330")));
}

TEST(Nesting, OfAGenericOrAnyOtherPointerIsAllowedInsideExifAndGenericDirectories) {
    for (const bool generic : {true, false}) {
        TiffBuilder file;
        file.image().sub(generic ? 330 : 34665, withAllPointers(file));
        const ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty()) << "generic: " << generic;
        const std::string_view field = generic ? "SubIFDs" : "DigitalCamera";
        EXPECT_EQ(run.number({field, "SubIFDs", "UnknownTags", "Value"}), 4);
        EXPECT_EQ(run.number({field, "DigitalCamera", "UnknownTags", "Value"}), 4);
        EXPECT_EQ(run.number({field, "GPSInfo", "GPSLatitudeRef"}), 4);
        EXPECT_EQ(run.number({field, "InteroperabilityIFD", "InteroperabilityIndex"}), 4);
    }
}

TEST(Nesting, OfAGpsDirectoryThatHoldsNothingElseLeavesAnEmptyMatrix) {
    const ModuleRun run(tiffOf(Dir().nest(34853, Dir().nest(34665, Dir().shorts(37383, {5})))));
    EXPECT_THAT(run.messages(), ElementsAre(gpsNesting("34665")));
    EXPECT_EQ(run.value({"GPSInfo"}).className(), "double");
    EXPECT_THAT(run.dimensions({"GPSInfo"}), ElementsAre(0, 0));
}

}  // namespace

}  // namespace veltrace::test
