// The three format tests, byte by byte.
#include <gtest/gtest.h>

#include "entry/format_sniffers.h"
#include "support/memory_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using Sniffer = bool (*)(const char* fileName);

bool accepts(Sniffer sniffer, const Bytes& file) {
    return sniffer(MemoryFile(file).name().c_str());
}

struct SignatureCase {
    const char* name;
    Sniffer sniffer;
    Bytes signature;
};

class Signature : public testing::TestWithParam<SignatureCase> {};

TEST_P(Signature, IsAcceptedWithAnyBytesAfterIt) {
    const auto& [name, sniffer, signature] = GetParam();
    EXPECT_TRUE(accepts(sniffer, signature));
    EXPECT_TRUE(accepts(sniffer, signature + bytesOf("kiln")));
}

TEST_P(Signature, IsRejectedIfTruncated) {
    const auto& [name, sniffer, signature] = GetParam();
    for (std::size_t length = 0; length < signature.size(); ++length) {
        EXPECT_FALSE(accepts(
            sniffer, Bytes(signature.begin(), signature.begin() + static_cast<long>(length))));
    }
}

TEST_P(Signature, IsRejectedIfAnyByteDiffers) {
    const auto& [name, sniffer, signature] = GetParam();
    for (std::size_t position = 0; position < signature.size(); ++position) {
        for (unsigned value = 0; value < 256; ++value) {
            Bytes changed = signature;
            changed[position] = static_cast<std::uint8_t>(value);
            EXPECT_EQ(accepts(sniffer, changed), changed == signature) << position << ' ' << value;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Sniffers, Signature,
    testing::Values(SignatureCase{"Jpeg", isJpegFile, {0xFF, 0xD8}},
                    SignatureCase{"LittleEndianTiff", isClassicTiffFile, {'I', 'I', 0x2A, 0}},
                    SignatureCase{"BigEndianTiff", isClassicTiffFile, {'M', 'M', 0, 0x2A}},
                    SignatureCase{"LittleEndianBigTiff", isBigTiffFile, {'I', 'I', 0x2B, 0}},
                    SignatureCase{"BigEndianBigTiff", isBigTiffFile, {'M', 'M', 0x2B, 0}}),
    [](const auto& test) { return test.param.name; });

constexpr Sniffer kEverySniffer[] = {isJpegFile, isClassicTiffFile, isBigTiffFile};

TEST(Sniffers, RejectAFileThatCannotBeOpened) {
    for (const Sniffer sniffer : kEverySniffer) {
        EXPECT_FALSE(sniffer("/nonexistent/kiln.tif"));
    }
}

TEST(Sniffers, RejectAFileOfFewerThanTwoBytes) {
    for (const Sniffer sniffer : kEverySniffer) {
        for (const Bytes& file : {Bytes{}, Bytes{0xFF}, Bytes{'M'}, Bytes{'I'}}) {
            EXPECT_FALSE(accepts(sniffer, file));
        }
    }
}

}  // namespace

}  // namespace veltrace::test
