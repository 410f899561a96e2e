// What a tag reports of its entry.
#include <gtest/gtest.h>

#include "ifd/ifd.h"
#include "support/memory_file.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "tag/tiff_tag.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

TEST(EntryFacts, OfAFallbackTagAreZero) {
    inQuietCall([] {
        const TiffTag tag(254, IfdId::image);
        EXPECT_EQ(tag.dataType(), 0U);
        EXPECT_EQ(tag.count(), 0U);
        EXPECT_EQ(tag.valueOffset(), 0U);
        EXPECT_EQ(tag.byteSize(), 0U);
    });
}

TEST(EntryFacts, LowWordOfAnOffsetHas32Bits) {
    const MemoryFile memory(tiffOf(Dir().entryAt(37510, 1, 5, 3'000'000'000)));
    memory.put(3'000'000'000, bytesOf("ember"));
    inQuietCall([&] {
        ClassicTiffTagFile reader(memory.name().c_str());
        reader.readHeader();
        IFD directory(reader, IfdId::exif);
        directory.readIfd();
        EXPECT_EQ(directory.knownTags()[0].valueOffset(), 3'000'000'000U);
        EXPECT_EQ(directory.knownTags()[0].valueOffsetLowWord(), 3'000'000'000U);
    });
}

}  // namespace

}  // namespace veltrace::test
