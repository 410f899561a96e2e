// The dump of a value beyond 2 GiB.
#include <gmock/gmock.h>
#include <sstream>

#include "diag/dump.h"
#include "ifd/ifd.h"
#include "support/memory_file.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

TEST(TagDump, HasAnOffsetBeyond2Gigabytes) {
    TiffBuilder file;
    file.image().entryAt(37510, 1, 5, 3'000'000'000);
    const MemoryFile memory(file.bytes());
    memory.put(3'000'000'000, bytesOf("ember"));
    inQuietCall([&] {
        ClassicTiffTagFile reader(memory.name().c_str());
        reader.readHeader();
        IFD directory(reader, IfdId::exif);
        directory.readIfd();
        std::ostringstream text;
        text << directory.knownTags()[0];
        EXPECT_THAT(text.str(), testing::HasSubstr("Offset:  3000000000\n"));
        EXPECT_THAT(text.str(), testing::HasSubstr("Raw Numeric data: 101 109 98 101 114 \n"));
    });
}

}  // namespace

}  // namespace veltrace::test
