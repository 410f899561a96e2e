// That every failure of a header is fatal. To a host a fatal error before the first directory looks
// like any other.
#include <gtest/gtest.h>
#include <string>

#include "support/memory_file.h"
#include "support/thrown.h"
#include "support/tiff_builder.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

namespace {

constexpr std::int64_t kTwoGigabytes = std::int64_t{1} << 31;

template <class Reader>
zephra::Message fatalHeaderErrorIn(const MemoryFile& file) {
    Reader reader(file.name().c_str());
    return fatalErrorOf([&] { reader.readHeader(); });
}

/// A header whose directory is at 2 GiB, in a file that reaches beyond.
template <class Reader>
zephra::Message fatalErrorOfAFarDirectory(Flavour flavour) {
    const MemoryFile file(TiffBuilder(Order::little, flavour).firstOffset(kTwoGigabytes).bytes());
    file.put(kTwoGigabytes, {0, 0});
    return fatalHeaderErrorIn<Reader>(file);
}

TEST(FarFirstDirectory, IsFatalInEveryFormat) {
    const std::string text =
        "Could not seek to position specified by TIFF header offset pointer,  the image may be "
        "corrupt.\n";
    const auto classic = message("ZEPHRA:veltrace:badTiffHeaderIfdOffset", text);
    EXPECT_EQ(fatalErrorOfAFarDirectory<ClassicTiffTagFile>(Flavour::classic), classic);
    EXPECT_EQ(fatalErrorOfAFarDirectory<JpegTagFile>(Flavour::classic), classic);
    EXPECT_EQ(fatalErrorOfAFarDirectory<BigTiffTagFile>(Flavour::big),
              message("ZEPHRA:veltrace:bigTiff:badTiffHeaderIfdOffset", text));
}

TEST(TruncatedBigHeader, IsFatalInTheOffsetSize) {
    for (const Bytes& bytes : {Bytes{'I', 'I', 43, 0}, Bytes{'M', 'M', 43, 0, 0}}) {
        EXPECT_EQ(
            fatalHeaderErrorIn<BigTiffTagFile>(MemoryFile(bytes)),
            message("ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
                    "Could not read offset size in the TIFF header, the image may be corrupt."));
    }
}

// Kept: shares the identifier of the offset size.
TEST(TruncatedBigHeader, IsFatalInThePadding) {
    for (const Bytes& bytes : {Bytes{'I', 'I', 43, 0, 8, 0}, Bytes{'M', 'M', 43, 0, 0, 8, 0}}) {
        EXPECT_EQ(fatalHeaderErrorIn<BigTiffTagFile>(MemoryFile(bytes)),
                  message("ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
                          "Could not read Big TIFF header padding, the image may be corrupt."));
    }
}

}  // namespace

}  // namespace veltrace::test
