// Output in states that no file can cause.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "zephra/host/value.h"

#include "ifd/ifd_set.h"
#include "support/memory_file.h"
#include "support/messages.h"
#include "support/module_run.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

// A reader of classic files that claims to read some other format.
class FormatTagFile : public ClassicTiffTagFile {
public:
    FormatTagFile(const MemoryFile& file, std::int32_t format)
        : ClassicTiffTagFile(file.name().c_str()) {
        setFormatType(static_cast<FormatType>(format));
    }
};

TEST(FormatType, MustHaveAName) {
    const MemoryFile memory(tiffOf(Dir().shorts(271, {1})));
    for (const std::int32_t format : {3, 7, -1}) {
        const zephra::CallResult result = inCall([&] {
            FormatTagFile reader(memory, format);
            reader.readAll();
            (void)reader.outputValue();
        });
        EXPECT_EQ(result.error(),
                  message("ZEPHRA:veltrace:setDefaultQvFields:unknownFileFormat",
                          "File format type " + std::to_string(format) + " is unknown"));
        EXPECT_THAT(result.warnings(), SizeIs(0));
    }
}

// The date is created first, so its failure is the one that is reported.
TEST(FormatType, IsCheckedAfterTheDate) {
    TiffBuilder file;
    file.image().shorts(271, {1});
    const MemoryFile memory(file.bytes());
    memory.setModificationTime(100'000'000'000'000'000);
    const zephra::CallResult result = inCall([&] {
        FormatTagFile reader(memory, 3);
        reader.readAll();
        (void)reader.outputValue();
    });
    EXPECT_EQ(result.error(), unknownDate());
}

TEST(IfdSet, ReturnsAnEmptyMatrixIfItHasNoDirectories) {
    inQuietCall([] {
        IFDSet chain;
        EXPECT_EQ(chain.ifdId(), IfdId::image);
        const zephra::Value output(chain.outputValue());
        EXPECT_TRUE(output);
        EXPECT_EQ(output.className(), "double");
        EXPECT_THAT(output.dimensions(), ElementsAre(0, 0));
    });
}

TEST(TagFile, ReturnsAnEmptyMatrixIfItHasNoChain) {
    inQuietCall([] {
        const MemoryFile memory(bytesOf("anything"));
        ClassicTiffTagFile reader(memory.name().c_str());
        const zephra::Value output(reader.outputValue());
        EXPECT_EQ(output.className(), "double");
        EXPECT_THAT(output.dimensions(), ElementsAre(0, 0));
    });
}

TEST(DefaultFieldNames, Are34ForTiffAnd10ForJpeg) {
    const MemoryFile memory(bytesOf("anything"));
    EXPECT_THAT(ClassicTiffTagFile(memory.name().c_str()).defaultFieldNames(), SizeIs(34));
    EXPECT_THAT(BigTiffTagFile(memory.name().c_str()).defaultFieldNames(), SizeIs(34));
    EXPECT_THAT(JpegTagFile(memory.name().c_str()).defaultFieldNames(), SizeIs(10));
}

}  // namespace

}  // namespace veltrace::test
