// Copies are deep, for any nesting that can be read.
#include <optional>

#include "ifd/ifd_set.h"
#include "support/module_run.h"
#include "support/nested_file.h"
#include "support/tiff_builder.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

constexpr std::size_t kUsualStack = std::size_t{8192} * 1024;

const IFDSet* exifOf(const IFDSet& chain) {
    for (const TiffTag& tag : chain.directories().front().knownTags()) {
        if (tag.tagId() == 34665) {
            return tag.subDirectory();
        }
    }
    return nullptr;
}

TEST(Copy, OwnsItsSubDirectories) {
    const MemoryFile memory(tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}))));
    const auto result = inCall([&memory] {
        std::optional<IFDSet> copy;
        {
            ClassicTiffTagFile reader(memory.name().c_str());
            reader.readAll();
            copy = *reader.ifdSet();
            EXPECT_NE(exifOf(*copy), exifOf(*reader.ifdSet()));
        }
        // The original is gone.
        ASSERT_NE(exifOf(*copy), nullptr);
        const TiffTag& tag = exifOf(*copy)->directories().front().knownTags().front();
        EXPECT_EQ(tag.name(), "MeteringMode");
        EXPECT_EQ(tag.firstValue(), 5.0);
    });
    EXPECT_FALSE(result.error());
}

std::size_t depthOf(const IFDSet& chain) {
    std::size_t depth = 0;
    for (const IFDSet* level = exifOf(chain); level != nullptr; level = exifOf(*level)) {
        ++depth;
    }
    return depth;
}

/// Reads and copies a file of this depth. Returns false if the stack is too small.
bool copiesWhole(std::size_t depth) {
    const MemoryFile memory(nestedExif(depth));
    ClassicTiffTagFile reader(memory.name().c_str());
    try {
        reader.readAll();
    } catch (const StackExhausted&) {
        return false;
    }
    const IFDSet copy = *reader.ifdSet();
    EXPECT_EQ(depthOf(copy), depth);
    return true;
}

TEST(Copy, OfTwoThousandLevelsFitsTheUsualStack) {
    runOnStack(kUsualStack, [] {
        const auto result = inCall([] { EXPECT_TRUE(copiesWhole(2000)); });
        EXPECT_FALSE(result.error());
    });
}

TEST(Copy, OfTheDeepestReadableFileFitsTheStack) {
    runOnStack(kUsualStack / 8, [] {
        const auto result = inCall([] {
            std::size_t depth = 1;
            while (copiesWhole(depth)) {
                depth += 1 + depth / 64;
            }
            EXPECT_GT(depth, 16U);
        });
        EXPECT_FALSE(result.error());
    });
}

}  // namespace

}  // namespace veltrace::test
