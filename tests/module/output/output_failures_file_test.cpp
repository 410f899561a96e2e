// A host that refuses arrays. Those whose loss has a message end the call with it; of all others
// the place stays empty.
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/leak_tolerance.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// No file here makes more arrays than this.
constexpr std::uint64_t kMoreArraysThanMade = 100;

// Runs the module again and again, each time without another one of its arrays, and collects the
// errors in the order in which the arrays are asked for.
std::vector<zephra::Message> errorsOfRefusedArrays(const Bytes& file) {
    std::vector<zephra::Message> errors;
    for (std::uint64_t refused = 1; refused <= kMoreArraysThanMade; ++refused) {
        zephra::Settings settings = strictHost();
        settings.failArray = refused;
        const LeakTolerance tolerance;
        const ModuleRun run(file, settings);
        EXPECT_THAT(run.warnings(), IsEmpty());
        if (run.error()) {
            errors.push_back(*run.error());
            EXPECT_FALSE(run.output());
        } else {
            EXPECT_TRUE(run.output());
        }
    }
    return errors;
}

const zephra::Message kNoStructure =
    message("ZEPHRA:veltrace:IFDSet:infoStructAllocationFailure",
            "Could not allocate enough memory for the output structure.");

zephra::Message noNumbersFor(const std::string& name) {
    return message("ZEPHRA:veltrace:TiffTag:numericAllocationFailure",
                   "Could not allocate enough memory for the output array for tag" + name + ".\n");
}

TEST(RefusedArray, IsToldForTheStructureAndTheNumbersOfTags) {
    TiffBuilder file;
    file.image().longs(273, {8, 9}).ascii(305, "kiln").shorts(271, {1, 2, 3});
    EXPECT_THAT(errorsOfRefusedArrays(file.bytes()),
                ElementsAre(kNoStructure, noNumbersFor("StripOffsets"), noNumbersFor("Make"),
                            noNumbersFor("NewSubFileType"), noNumbersFor("BitsPerSample"),
                            noNumbersFor("Thresholding"), noNumbersFor("FillOrder"),
                            noNumbersFor("Orientation"), noNumbersFor("SamplesPerPixel"),
                            noNumbersFor("RowsPerStrip"), noNumbersFor("MinSampleValue"),
                            noNumbersFor("MaxSampleValue"), noNumbersFor("GrayResponseUnit")));
}

TEST(RefusedArray, IsToldForSubDirectories) {
    TiffBuilder file;
    file.image().sub(34665, file.child().shorts(37383, {5}));
    EXPECT_THAT(errorsOfRefusedArrays(jpegWithExif(file.bytes())),
                ElementsAre(kNoStructure, kNoStructure, noNumbersFor("MeteringMode")));
}

TEST(RefusedArray, IsToldForUnknownTags) {
    TiffBuilder file;
    file.image().ascii(65000, "pot").shorts(65001, {1, 2});
    EXPECT_THAT(
        errorsOfRefusedArrays(jpegWithExif(file.bytes())),
        ElementsAre(kNoStructure,
                    message("ZEPHRA:veltrace:IFDSet:unknownTags:infoStructAllocationFailure",
                            "Could not allocate enough memory for the list of unknown tags."),
                    message("ZEPHRA:veltrace:TiffTag:unknownTag:charAllocationFailure",
                            "Could not allocate enough memory for the output char array for the "
                            "unknown tag with ID 65000.\n"),
                    message("ZEPHRA:veltrace:TiffTag:unknownTag:numericAllocationFailure",
                            "Could not allocate enough memory for the output numeric array for the "
                            "unknown tag with ID 65001.\n")));
}

TEST(RefusedArray, IsToldForColormapsAndListsOfSampleFormats) {
    TiffBuilder file;
    file.image().shorts(320, {1, 2, 3}).shorts(339, {1, 2});
    EXPECT_THAT(errorsOfRefusedArrays(jpegWithExif(file.bytes())),
                ElementsAre(kNoStructure,
                            message("ZEPHRA:veltrace:tifftag:colormapAllocationFailure",
                                    "Could not allocate memory for Colormap tag value."),
                            message("ZEPHRA:veltrace:processSampleFormat",
                                    "Could not allocate memory for SampleFormat tag value.")));
}

TEST(RefusedArray, OfAWordOrTextIsNotTold) {
    TiffBuilder file;
    file.image().shorts(259, {5}).ascii(305, "kiln").shorts(339, {1});
    EXPECT_THAT(errorsOfRefusedArrays(jpegWithExif(file.bytes())), ElementsAre(kNoStructure));
}

std::size_t emptyFields(const ModuleRun& run) {
    std::size_t empty = 0;
    for (const std::string& name : run.fieldNames()) {
        empty += run.value({name}) ? 0U : 1U;
    }
    return empty;
}

// Ten fields and "Software" make eleven, of which FormatVersion has no array in any run.
TEST(RefusedArray, LeavesItsPlaceAloneEmptyWhereNothingIsTold) {
    TiffBuilder file;
    file.image().ascii(305, "kiln");
    const Bytes bytes = jpegWithExif(file.bytes());
    EXPECT_EQ(emptyFields(ModuleRun(bytes)), 1U);
    for (std::uint64_t refused = 2; refused <= 11; ++refused) {
        zephra::Settings settings = strictHost();
        settings.failArray = refused;
        const ModuleRun run(bytes, settings);
        EXPECT_THAT(run.messages(), IsEmpty());
        EXPECT_EQ(emptyFields(run), 2U) << "array " << refused;
    }
}

}  // namespace

}  // namespace veltrace::test
