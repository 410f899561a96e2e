// What a call gives back and what it leaves behind.
#include <fstream>
#include <sys/stat.h>

#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/nested_file.h"
#include "support/open_descriptors.h"

namespace veltrace::test {

namespace {

Bytes rotatedImage() {
    return tiffOf(Dir().shorts(274, {6}));
}

Bytes withoutEntries() {
    return tiffOf(Dir());
}

TEST(Call, StoresItsOutputWhateverTheOutputCountSays) {
    const MemoryFile file(rotatedImage());
    const zephra::EntryPoint module = moduleUnderTest();
    const zephra::EntryPoint withoutOutputs = [&module](int, qvArray* outputs[], int inputCount,
                                                        const qvArray* inputs[]) {
        module(0, outputs, inputCount, inputs);
    };
    const auto result =
        zephra::Host(strictHost()).call(withoutOutputs, std::vector<zephra::Argument>{file.name()});
    EXPECT_FALSE(result.error());
    EXPECT_EQ(result.output().field(0, "Orientation").numbers().front(), 6);
}

TEST(Call, OutputIsAColumnWithOneElementForEachDirectory) {
    const ModuleRun run = quietRun(tiffOf(Dir().shorts(274, {6}), Dir().shorts(274, {8})));
    EXPECT_EQ(run.output().className(), "struct");
    EXPECT_THAT(run.dimensions({}), ElementsAre(2, 1));
}

struct Ending {
    const char* name;
    Bytes file;
    std::vector<std::string> identifiers;
};

class CallThatEnds : public testing::TestWithParam<Ending> {};

TEST_P(CallThatEnds, LeavesNothingBehind) {
    const MemoryFile file(GetParam().file);
    const std::ptrdiff_t descriptors = openDescriptors();
    const ModuleRun run(file);
    std::vector<std::string> identifiers;
    for (const zephra::Message& message : run.messages()) {
        identifiers.push_back(message.identifier);
    }
    EXPECT_EQ(identifiers, GetParam().identifiers);
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
    EXPECT_EQ(openDescriptors(), descriptors);
}

INSTANTIATE_TEST_SUITE_P(
    Ways, CallThatEnds,
    testing::Values(
        Ending{"WithAnImage", rotatedImage(), {}},
        Ending{"WithAPhotograph", jpegWithExif(rotatedImage()), {}},
        Ending{"WithoutADirectory", {0xFF, 0xD8, 0xFF, 0xDB, 0, 0x43}, {}},
        Ending{"InAFatalError",
               {'I', 'I', 0x2A, 0x00, 8, 0},
               {"ZEPHRA:veltrace:badTiffHeaderOffsetRead"}},
        Ending{"InARecoverableError", withoutEntries(), {"ZEPHRA:veltrace:zeroLengthIfdTable"}}),
    [](const auto& test) { return test.param.name; });

TEST(Call, UnknownExceptionLeavesTheReaderAndTheNameBehind) {
    const LeakTolerance tolerance;
    const MemoryFile file(endlessExif());
    const std::ptrdiff_t descriptors = openDescriptors();
    const ModuleRun run(file);
    EXPECT_THAT(run.messages(), ElementsAre(unknownException()));
    EXPECT_FALSE(run.output());
    EXPECT_GE(run.leftovers().blocks, 1U);
    EXPECT_EQ(openDescriptors(), descriptors + 1);
}

TEST(Call, LeavesTheFileAsItWas) {
    const Bytes bytes = rotatedImage();
    const MemoryFile file(bytes);
    file.setModificationTime(1'000'000'000);
    EXPECT_THAT(ModuleRun(file).messages(), IsEmpty());
    std::ifstream stream(file.name(), std::ios::binary);
    EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(stream), {}), bytes);
    struct stat status {};
    ASSERT_EQ(stat(file.name().c_str(), &status), 0);
    EXPECT_EQ(status.st_mtime, 1'000'000'000);
}

TEST(Call, KnowsNothingOfTheCallBefore) {
    const MemoryFile file(rotatedImage());
    const ModuleRun before(file);
    const ModuleRun failing(withoutEntries());
    const ModuleRun after(file);
    EXPECT_TRUE(failing.error());
    EXPECT_THAT(after.messages(), IsEmpty());
    EXPECT_EQ(after.fieldNames(), before.fieldNames());
    EXPECT_EQ(after.number({"Orientation"}), 6);
}

}  // namespace

}  // namespace veltrace::test
