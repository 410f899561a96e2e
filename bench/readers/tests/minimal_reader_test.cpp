// The minimal reader against the module, over files that are damaged in every place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/generated_files.h"
#include "readers/module_count.h"
#include "readers/readers.h"
#include "support/memory_file.h"
#include "support/tiff_builder.h"

namespace veltrace::bench {

namespace {

using test::MemoryFile;
using test::TiffBuilder;
using test::TiffDirectory;

zephra::Settings fewBlocks() {
    zephra::Settings settings;
    settings.blockBudget = 5'000;
    return settings;
}

/// Values are left out: the module keeps one number of a width, however many there are.
void expectSameWork(const MemoryFile& file, const std::string& what) {
    const Delivered module = countByModule(file.name(), fewBlocks());
    const Delivered minimal = minimalReader()->count(file.name());
    EXPECT_EQ(minimal.directories, module.directories) << what;
    EXPECT_EQ(minimal.entries, module.entries) << what;
    EXPECT_EQ(minimal.refused, module.refused) << what;
}

void expectSameWork(const TiffBuilder& builder) {
    expectSameWork(MemoryFile(builder.bytes()), "");
}

std::vector<Bytes> wholeFiles() {
    return {photograph(Order::little, 1),
            photograph(Order::big, 1),
            jpegPhotograph(Order::big, 1),
            bigPage(),
            chain(3),
            nesting(3)};
}

TEST(Minimal, EndsWhereTheModuleEndsInEveryFileThatIsCutShort) {
    for (const Bytes& whole : wholeFiles()) {
        const MemoryFile file(whole);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            file.replace({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
            expectSameWork(file, "the first " + std::to_string(size) + " bytes");
        }
    }
}

TEST(Minimal, ReadsWhatTheModuleReadsWhateverByteIsChanged) {
    for (const Bytes& whole : wholeFiles()) {
        const MemoryFile file(whole);
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (const int change : {0x01, 0x80, 0xFF}) {
                Bytes changed = whole;
                changed[at] = static_cast<std::uint8_t>(changed[at] ^ change);
                file.replace(changed);
                expectSameWork(
                    file, "byte " + std::to_string(at) + " changed by " + std::to_string(change));
            }
        }
    }
}

TEST(Minimal, GivesUpADirectoryThatIsItsOwnExifDirectory) {
    TiffBuilder builder;
    TiffDirectory& image = builder.image();
    image.sub(34665, image);
    EXPECT_EQ(minimalReader()->count(MemoryFile(builder.bytes()).name()), refusal());
}

TEST(Minimal, LeavesOutPointersBelowGps) {
    TiffBuilder builder;
    TiffDirectory& gps = builder.child();
    TiffDirectory& exif = builder.child();
    exif.shorts(37383, {5});
    gps.bytes(5, {0}).sub(34665, exif);
    builder.image().shorts(258, {8}).sub(34853, gps);
    // Two entries of the image, one of GPS.
    const Delivered expected{.directories = 2, .entries = 3, .values = 2, .refused = 0};
    EXPECT_EQ(minimalReader()->count(MemoryFile(builder.bytes()).name()), expected);
    expectSameWork(builder);
}

TEST(Minimal, ForgetsWhatABrokenSubIfdHad) {
    TiffBuilder builder;
    TiffDirectory& small = builder.child();
    small.shorts(258, {8}).next(8'000);  // past the end: the chain stops
    TiffDirectory& broken = builder.child();
    broken.shorts(258, {8}).statedCount(500);
    builder.image().shorts(258, {8}).sub(330, small).sub(330, broken);
    const Delivered expected{.directories = 2, .entries = 3, .values = 2, .refused = 0};
    EXPECT_EQ(minimalReader()->count(MemoryFile(builder.bytes()).name()), expected);
    expectSameWork(builder);
}

TEST(Minimal, CountsAWidthOnceAndNotWhenItIsZero) {
    TiffBuilder builder;
    builder.image().longs(256, {7}).longs(256, {8}).longs(257, {0}).shorts(258, {8});
    const Delivered expected{.directories = 1, .entries = 2, .values = 4, .refused = 0};
    EXPECT_EQ(minimalReader()->count(MemoryFile(builder.bytes()).name()), expected);
    expectSameWork(builder);
}

}  // namespace

}  // namespace veltrace::bench
