// Names as they reach the output.
#include <span>

#include "support/file_test.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

namespace {

// Width and height are facts of the directory and never become tags.
bool becomesATag(const NameRow& row) {
    return row.id != 256 && row.id != 257;
}

std::vector<std::string> namesOf(std::span<const NameRow> rows) {
    std::vector<std::string> names;
    for (const NameRow& row : rows) {
        if (becomesATag(row)) {
            names.emplace_back(row.name);
        }
    }
    return names;
}

// Entries in descending order, so that an ascending output is the module's work.
void addAll(TiffDirectory& directory, std::span<const NameRow> rows, TiffBuilder& file) {
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        if (std::ranges::count(kPointerTags, row->id) == 0) {
            directory.bytes(row->id, {1});
        } else {
            directory.sub(row->id, file.child().bytes(1, {1}));
        }
    }
}

TEST(TagNames, AreTheFieldsOfAnImageDirectory) {
    TiffBuilder file;
    addAll(file.image(), kMainRows, file);
    const ModuleRun run = quietRun(jpegWithExif(file.bytes()));
    std::vector<std::string> names(std::begin(kGeneralFields), std::end(kGeneralFields));
    std::ranges::copy(namesOf(kMainRows), std::back_inserter(names));
    EXPECT_THAT(run.fieldNames(), ElementsAreArray(names));
}

TEST(TagNames, AreTheFieldsOfAnExifDirectory) {
    TiffBuilder file;
    TiffDirectory& exif = file.child();
    addAll(exif, kMainRows, file);
    file.image().sub(34665, exif);
    const ModuleRun run = quietRun(jpegWithExif(file.bytes()));
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAreArray(namesOf(kMainRows)));
}

TEST(TagNames, AreTheFieldsOfAGpsDirectory) {
    TiffBuilder file;
    TiffDirectory& gps = file.child();
    addAll(gps, kGpsRows, file);
    file.image().sub(34853, gps);
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAreArray(namesOf(kGpsRows)));
}

TEST(TagNames, AreTheFieldsOfAnInteroperabilityDirectory) {
    TiffBuilder file;
    TiffDirectory& interoperability = file.child();
    addAll(interoperability, kInteroperabilityRows, file);
    file.image().sub(40965, interoperability);
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_THAT(run.fieldNames({"InteroperabilityIFD"}),
                ElementsAre("InteroperabilityIndex", "InteroperabilityVersion",
                            "RelatedImageFileFormat", "RelatedImageWidth", "RelatedImageLength"));
}

TEST(TagNames, AreMissingForTheGapsBetweenBaselineTags) {
    const std::vector<std::uint16_t> gaps{260, 261, 267, 268, 275, 276, 294, 295, 298,
                                          299, 329, 331, 335, 348, 349, 350, 516};
    TiffBuilder file;
    for (const std::uint16_t id : gaps) {
        file.image().bytes(id, {1});
    }
    const ModuleRun run = quietRun(file.bytes());
    const zephra::Value unknown = run.value({"UnknownTags"});
    ASSERT_EQ(unknown.size(), gaps.size());
    for (std::size_t i = 0; i < gaps.size(); ++i) {
        EXPECT_THAT(unknown.field(i, "ID").numbers(), ElementsAre(gaps[i]));
    }
}

TEST(TagNames, LeaveTagZeroUnknownOutsideGpsDirectories) {
    const ModuleRun run = quietRun(tiffOf(Dir()
                                              .bytes(0, {2})
                                              .nest(34665, Dir().bytes(0, {3}))
                                              .nest(34853, Dir().bytes(0, {2, 3, 0, 0}))));
    EXPECT_EQ(run.number({"UnknownTags", "ID"}), 0);
    EXPECT_EQ(run.number({"DigitalCamera", "UnknownTags", "ID"}), 0);
    EXPECT_THAT(run.numbers({"GPSInfo", "GPSVersionID"}), ElementsAre(2, 3, 0, 0));
}

TEST(TagNames, EndAtThirtySoThatTag31IsUnknownInGpsDirectories) {
    const ModuleRun run =
        quietRun(tiffOf(Dir().nest(34853, Dir().shorts(30, {1}).shorts(31, {2}))));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("GPSDifferential", "UnknownTags"));
    EXPECT_EQ(run.number({"GPSInfo", "UnknownTags", "ID"}), 31);
}

TEST(TagNames, TellOneIdApartInGpsAndInteroperabilityDirectories) {
    const ModuleRun run(
        tiffOf(Dir().nest(34853, Dir().ascii(1, "N")).nest(40965, Dir().ascii(1, "R98"))));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("GPSLatitudeRef"));
    EXPECT_THAT(run.fieldNames({"InteroperabilityIFD"}), ElementsAre("InteroperabilityIndex"));
}

// The width of a directory is not a field of its own there, so a failing entry shows its name.
TEST(TagNames, CallTag256WidthInAnExifDirectoryToo) {
    const ModuleRun run(
        tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}).entryAt(256, 4, 2, 4096))));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableValue("Width", 4096)));
}

}  // namespace

}  // namespace veltrace::test
