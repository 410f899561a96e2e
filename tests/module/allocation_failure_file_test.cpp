// A host that refuses one block or one array: every refusal ends in what is stated for it.
#include "support/file_test.h"
#include "support/leak_tolerance.h"

namespace veltrace::test {

namespace {

constexpr const char* kBlockRefused = "ZEPHRA:veltrace:TagFile:failedMemoryAllocation";
constexpr const char* kTableRefused = "ZEPHRA:veltrace:badRawIfdBufferMemoryAllocation";

constexpr std::size_t kEntries = 8;

/// Each kind of value once: numbers, text, colour map, sample formats, a nested directory, unknown
/// numbers and unknown text.
Bytes oneOfEach() {
    return tiffOf(Dir()
                      .shorts(256, {10})
                      .shorts(258, {8, 8, 8})
                      .ascii(305, "kiln")
                      .shorts(320, {0, 1, 2, 3, 4, 5})
                      .shorts(339, {1, 1})
                      .nest(34665, Dir().shorts(37383, {5}))
                      .shorts(50000, {1})
                      .ascii(50001, "x"));
}

zephra::Settings refusingBlock(std::uint64_t k) {
    zephra::Settings settings = strictHost();
    settings.failBlock = k;
    return settings;
}

zephra::Settings refusingArray(std::uint64_t k) {
    zephra::Settings settings = strictHost();
    settings.failArray = k;
    return settings;
}

std::string noBlockFor(std::uint16_t tagId, std::size_t size) {
    return "Unable to allocate " + std::to_string(size) + " to hold tag data for tag ID " +
           std::to_string(tagId) + "\n";
}

// The blocks of a call in their order: the name, the table, the value of each entry; the pointer's
// own block is followed by table and value of its directory.
TEST(AllocationFailure, OfAnyBlockEndsAsStated) {
    const Bytes file = oneOfEach();
    const std::vector<zephra::Message> warnings = {
        message(kBlockRefused, noBlockFor(256, 2)),
        message(kBlockRefused, noBlockFor(258, 6)),
        message(kBlockRefused, noBlockFor(305, 5)),
        message(kBlockRefused, noBlockFor(320, 12)),
        message(kBlockRefused, noBlockFor(339, 4)),
        message(kBlockRefused, noBlockFor(34665, 4)),
        message(kTableRefused, "Could not allocate 12 bytes required for the IFD table."),
        message(kBlockRefused, noBlockFor(37383, 2)),
        message(kBlockRefused, noBlockFor(50000, 2)),
        message(kBlockRefused, noBlockFor(50001, 2)),
    };

    const ModuleRun withoutName(file, refusingBlock(1));
    ASSERT_TRUE(withoutName.error());
    EXPECT_EQ(withoutName.error()->identifier, "ZEPHRA:host:outOfMemory");

    const ModuleRun withoutTable(file, refusingBlock(2));
    EXPECT_THAT(
        withoutTable.messages(),
        ElementsAre(message(kTableRefused, "Could not allocate " + std::to_string(12 * kEntries) +
                                               " bytes required for the IFD table.")));
    EXPECT_EQ(withoutTable.leftovers(), zephra::Leftovers{});

    std::uint64_t k = 3;
    for (const zephra::Message& warning : warnings) {
        const ModuleRun run(file, refusingBlock(k++));
        EXPECT_THAT(run.messages(), ElementsAre(warning));
        EXPECT_EQ(run.directories(), 1U);
        EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
    }
    const ModuleRun complete = quietRun(file, refusingBlock(k));
}

TEST(AllocationFailure, OfAnEntryKeepsTheOthers) {
    const ModuleRun run(oneOfEach(), refusingBlock(4));  // BitsPerSample
    EXPECT_EQ(run.number({"Width"}), 10);
    EXPECT_EQ(run.numbers({"BitsPerSample"}), std::vector<double>{1});  // the fallback
    EXPECT_EQ(run.text({"Software"}), std::string("kiln\0", 5));
    EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
}

/// What becomes of a call whose host refuses one array: an error, or one empty place.
struct Refusal {
    std::optional<zephra::Message> error;
    std::vector<std::string_view> emptyField = {};
};

Refusal ends(const zephra::Message& error) {
    return {error, {}};
}

Refusal empties(std::vector<std::string_view> field) {
    return {std::nullopt, std::move(field)};
}

// The arrays of a call in their order: the structure, general fields, derived fields, then the
// tags as they stand in the file, the fallback tags, the unknown tags.
std::vector<Refusal> refusals() {
    return {
        ends(noStructure()),
        empties({"Filename"}),
        empties({"FileModDate"}),
        empties({"FileSize"}),
        empties({"Format"}),
        empties({"FormatSignature"}),
        empties({"ByteOrder"}),
        empties({"Width"}),
        empties({"Height"}),
        empties({"ColorType"}),
        empties({"BitDepth"}),
        ends(noNumbersFor("BitsPerSample")),
        empties({"Software"}),
        ends(noColormap()),
        ends(noSampleFormats()),
        empties({"SampleFormat", "0"}),
        empties({"SampleFormat", "1"}),
        ends(noStructure()),
        ends(noNumbersFor("MeteringMode")),
        ends(noNumbersFor("NewSubFileType")),
        empties({"Compression"}),
        ends(noNumbersFor("Thresholding")),
        ends(noNumbersFor("FillOrder")),
        ends(noNumbersFor("Orientation")),
        ends(noNumbersFor("SamplesPerPixel")),
        ends(noNumbersFor("RowsPerStrip")),
        ends(noNumbersFor("MinSampleValue")),
        ends(noNumbersFor("MaxSampleValue")),
        empties({"PlanarConfiguration"}),
        ends(noNumbersFor("GrayResponseUnit")),
        empties({"ResolutionUnit"}),
        ends(noUnknownTags()),
        empties({"UnknownTags", "ID"}),
        empties({"UnknownTags", "Offset"}),
        ends(noUnknownTag("numeric", 50000)),
        empties({"UnknownTags", "1", "ID"}),
        empties({"UnknownTags", "1", "Offset"}),
        ends(noUnknownTag("char", 50001)),
    };
}

/// The place that a path names; a digit chooses a cell, or the element that the next name is in.
zephra::Value placeOf(const ModuleRun& run, const std::vector<std::string_view>& path) {
    zephra::Value value = run.output();
    std::size_t element = 0;
    for (const std::string_view step : path) {
        if (step != "0" && step != "1") {
            value = value.field(element, step);
            element = 0;
        } else if (value.classCode() == qvClassCell) {
            value = value.cell(step == "1" ? 1 : 0);
        } else {
            element = 1;
        }
    }
    return value;
}

TEST(AllocationFailure, OfAnyArrayEndsAsStated) {
    const Bytes file = oneOfEach();
    const ModuleRun complete(file);
    ASSERT_THAT(complete.messages(), IsEmpty());

    std::uint64_t k = 1;
    for (const Refusal& refusal : refusals()) {
        SCOPED_TRACE("array " + std::to_string(k));
        const LeakTolerance tolerance;
        const ModuleRun run(file, refusingArray(k++));
        if (refusal.error) {
            EXPECT_THAT(run.messages(), ElementsAre(*refusal.error));
            EXPECT_FALSE(run.output());
            // The name was the module's to free at the end, which the error forestalled.
            EXPECT_EQ(run.leftovers().blocks, 1U);
        } else {
            EXPECT_THAT(run.messages(), IsEmpty());
            EXPECT_TRUE(placeOf(complete, refusal.emptyField));
            EXPECT_FALSE(placeOf(run, refusal.emptyField));
            EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
        }
    }
    const ModuleRun afterAll = quietRun(file, refusingArray(k));
    for (const Refusal& refusal : refusals()) {
        EXPECT_TRUE(refusal.error || placeOf(afterAll, refusal.emptyField));
    }
}

// Without a directory chain there is still one array to make.
TEST(AllocationFailure, OfTheEmptyOutputLeavesNoOutput) {
    const ModuleRun run = quietRun(Bytes{0xFF, 0xD8, 0xFF, 0xDB, 0, 2}, refusingArray(1));
    EXPECT_FALSE(run.output());
}

}  // namespace

}  // namespace veltrace::test
