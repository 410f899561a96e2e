#include "names/image_signature.h"

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "zephra/host/host.h"
#include "zephra/host/module.h"

#include "descriptor.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

/// A file in memory.
Descriptor openFile(const std::string& content) {
    Descriptor file(memfd_create("image", MFD_CLOEXEC));
    EXPECT_EQ(write(file.get(), content.data(), content.size()),
              static_cast<ssize_t>(content.size()));
    return file;
}

bool isReadByModule(const zephra::EntryPoint& module, const std::string& content) {
    const Descriptor file = openFile(content);
    const zephra::Argument name{"/proc/self/fd/" + std::to_string(file.get())};
    const zephra::CallResult result = zephra::Host().call(module, {&name, 1});
    return !result.error() || result.error()->identifier != "ZEPHRA:veltrace:unhandledFileFormat";
}

TEST(ImageSignature, IsThatOfJpegTiffAndBigTiff) {
    EXPECT_TRUE(isImageStart("\xff\xd8"));
    EXPECT_TRUE(isImageStart("\xff\xd8\xff\xe1"));
    EXPECT_TRUE(isImageStart("II\x2a\0"s));
    EXPECT_TRUE(isImageStart("MM\0\x2a"s));
    EXPECT_TRUE(isImageStart("II\x2b\0"s));
    EXPECT_TRUE(isImageStart("MM\x2b\0"s));
    EXPECT_FALSE(isImageStart("MM\0\x2b"s));
    EXPECT_FALSE(isImageStart("II\0\x2a"s));
    EXPECT_FALSE(isImageStart("IM\x2a\0"s));
    EXPECT_FALSE(isImageStart("%PDF"));
    for (const std::string& start : {""s, "\xff"s, "I"s, "II"s, "II\x2a"s, "MM\0"s}) {
        EXPECT_FALSE(isImageStart(start)) << start;
    }
}

// Every file of up to four of the significant bytes, and one other byte.
TEST(ImageSignature, MatchesWhatTheModuleAccepts) {
    const zephra::Module module = zephra::Module::load(VELTRACE_MODULE_PATH);
    const zephra::EntryPoint entryPoint = module.entryPoint();
    constexpr std::array kBytes = {'I', 'M', '\0', '\x2a', '\x2b', '\xff', '\xd8', 'x'};
    std::vector<std::string> starts = {""};
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::string start = starts[i];
        ASSERT_EQ(isImageStart(start), isReadByModule(entryPoint, start)) << start;
        for (const char byte : kBytes) {
            if (start.size() < 4) {
                starts.push_back(start + byte);
            }
        }
    }
    EXPECT_EQ(starts.size(), 1U + 8 + 64 + 512 + 4096);
}

TEST(ImageSignature, IsReadFromAnOpenFileAndAssumedIfThatFails) {
    const Descriptor image = openFile("II\x2a\0 and more"s);
    EXPECT_TRUE(mayBeImage(image.get()));
    EXPECT_EQ(lseek(image.get(), 0, SEEK_CUR), 13);
    EXPECT_FALSE(mayBeImage(openFile("text").get()));
    EXPECT_FALSE(mayBeImage(openFile("").get()));
    const Descriptor directory(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    EXPECT_TRUE(mayBeImage(directory.get()));
}

}  // namespace
}  // namespace veltrace::cli
