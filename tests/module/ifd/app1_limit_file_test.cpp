// A directory of a JPEG file must fit the largest APP1 segment.
#include "support/file_test.h"
#include "support/jpeg_parts.h"

namespace veltrace::test {

namespace {

zephra::Message tooManyEntries(const std::string& kind, std::uint64_t position,
                               std::uint64_t entries) {
    return message("ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded",
                   "The " + kind + " image file directory at byte position " +
                       std::to_string(position) + " claims to have " + std::to_string(entries) +
                       " entries, which will exceed the maximum allowed size (64KB) of the APP1 "
                       "segment specified by the JPEG standard.  This IFD is being ignored.");
}

TEST(App1Limit, DirectoryOf5461EntriesIsRead) {
    TiffBuilder tiff;
    for (std::uint32_t i = 1; i <= 5461; ++i) {
        tiff.image().longs(274, {i});
    }
    expectOrientation(ModuleRun(jpegWithExif(tiff.bytes())), 5461);
}

// Kept: the message calls the directory ignored, and the call fails.
TEST(App1Limit, DirectoryOf5462EntriesFails) {
    for (const Order order : {Order::little, Order::big}) {
        for (const std::uint16_t entries : std::vector<std::uint16_t>{5462, 65535}) {
            const ModuleRun run(
                jpegWithExif(tiffOf({order}, Dir().shorts(274, {6}).statedCount(entries))));
            EXPECT_THAT(run.messages(),
                        ElementsAre(tooManyEntries("", kHeaderPosition + 8, entries)));
            EXPECT_FALSE(run.output());
            EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
        }
    }
}

struct DirectoryKind {
    std::uint16_t pointer;
    const char* field;
    const char* word;  // with its blank
};

class App1LimitOf : public testing::TestWithParam<DirectoryKind> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, App1LimitOf,
    testing::Values(DirectoryKind{330, "SubIFDs", ""}, DirectoryKind{34853, "GPSInfo", "GPS "},
                    DirectoryKind{40965, "InteroperabilityIFD", "interoperability "},
                    DirectoryKind{34665, "DigitalCamera", "Exif "}));

TEST_P(App1LimitOf, SubDirectoryIsAWarning) {
    TiffBuilder tiff;
    const auto& child = tiff.child().shorts(1, {1}).statedCount(5462);
    tiff.image().shorts(274, {6}).sub(GetParam().pointer, child);
    const ModuleRun run(jpegWithExif(tiff.bytes()));
    EXPECT_THAT(run.messages(),
                ElementsAre(tooManyEntries(GetParam().word,
                                           kHeaderPosition + tiff.positionOf(child), 5462)));
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_FALSE(run.hasField({GetParam().field}));
}

TEST_P(App1LimitOf, SubDirectoryOfATiffFileHasNone) {
    TiffBuilder tiff;
    auto& child = tiff.child();
    for (std::uint32_t i = 0; i < 5462; ++i) {
        child.longs(2000, {i});
    }
    tiff.image().sub(GetParam().pointer, child);
    const ModuleRun run = quietRun(tiff.bytes());
    EXPECT_EQ(run.value({GetParam().field, "UnknownTags"}).size(), 5462U);
}

}  // namespace

}  // namespace veltrace::test
