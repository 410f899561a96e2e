#include "wire/frame.h"

#include <cstring>
#include <gtest/gtest.h>
#include <malloc.h>

namespace veltrace::cli {
namespace {

std::string frame(std::uint64_t id, std::string_view payload) {
    std::string bytes;
    const std::size_t begin = beginFrame(bytes, id);
    bytes += payload;
    endFrame(bytes, begin);
    return bytes;
}

void receive(FrameBuffer& buffer, std::string_view bytes) {
    std::memcpy(buffer.room(bytes.size()), bytes.data(), bytes.size());
    buffer.filled(bytes.size());
}

TEST(Frame, HasSizeIdAndPayload) {
    EXPECT_EQ(frame(7, "kiln"), (std::string("\4\0\0\0"
                                             "\7\0\0\0\0\0\0\0"
                                             "kiln",
                                             16)));
}

TEST(FrameBuffer, ReturnsAFrameOnceItIsComplete) {
    const std::string bytes = frame(1, "ember");
    FrameBuffer buffer(100);
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
        receive(buffer, bytes.substr(i, 1));
        EXPECT_FALSE(buffer.next());
    }
    receive(buffer, bytes.substr(bytes.size() - 1));
    const auto next = buffer.next();
    ASSERT_TRUE(next);
    EXPECT_EQ(next->id, 1U);
    EXPECT_EQ(next->payload, "ember");
    EXPECT_FALSE(buffer.next());
    EXPECT_EQ(buffer.pending(), 0U);
}

TEST(FrameBuffer, ReturnsFramesThatArrivedTogetherOneByOne) {
    FrameBuffer buffer(100);
    receive(buffer, frame(1, "a") + frame(2, "") + frame(3, "ccc").substr(0, 13));
    EXPECT_EQ(buffer.next()->payload, "a");
    EXPECT_EQ(buffer.next()->id, 2U);
    EXPECT_FALSE(buffer.next());
    EXPECT_EQ(buffer.pending(), 13U);
    receive(buffer, "cc");
    EXPECT_EQ(buffer.next()->payload, "ccc");
}

TEST(FrameBuffer, ReportsTheSizeOfAnIncompleteFrame) {
    FrameBuffer buffer(100);
    const std::string bytes = frame(1, std::string(50, 'x'));
    receive(buffer, bytes.substr(0, kFrameHeader - 1));
    EXPECT_EQ(buffer.announced(), 0U);
    receive(buffer, bytes.substr(kFrameHeader - 1, 1));
    EXPECT_FALSE(buffer.next());
    EXPECT_EQ(buffer.announced(), kFrameHeader + 50);
}

TEST(FrameBuffer, AcceptsTheMaximalPayloadAndNoByteMore) {
    FrameBuffer exact(10);
    receive(exact, frame(1, std::string(10, 'x')));
    EXPECT_EQ(exact.next()->payload.size(), 10U);
    FrameBuffer less(9);
    receive(less, frame(1, std::string(10, 'x')).substr(0, kFrameHeader));
    EXPECT_THROW(static_cast<void>(less.next()), BadFrame);
}

TEST(FrameBuffer, FreesTheMemoryOfALargeFrame) {
    constexpr std::size_t kSize = std::size_t{64} << 20;
    FrameBuffer buffer(kSize);
    const std::string bytes = frame(1, std::string(kSize, 'x'));
    const std::size_t before = mallinfo2().hblkhd;
    receive(buffer, bytes);
    EXPECT_EQ(buffer.next()->payload.size(), kSize);
    EXPECT_FALSE(buffer.next());
    EXPECT_EQ(mallinfo2().hblkhd, before);
    receive(buffer, frame(2, "small"));
    EXPECT_EQ(buffer.next()->payload, "small");
}

TEST(FrameBuffer, TakesLittleMoreMemoryThanAFrame) {
    constexpr std::size_t kSize = std::size_t{64} << 20;
    FrameBuffer buffer(kSize);
    const std::string bytes = frame(1, std::string(kSize, 'x'));
    const std::size_t before = mallinfo2().hblkhd;
    receive(buffer, bytes.substr(0, 1000));
    receive(buffer, bytes.substr(1000, kSize / 2));
    receive(buffer, bytes.substr(1000 + kSize / 2));
    EXPECT_LT(mallinfo2().hblkhd - before, kSize + kSize / 2 + kSize / 4);
    EXPECT_EQ(buffer.next()->payload, std::string_view(bytes).substr(kFrameHeader));
}

}  // namespace
}  // namespace veltrace::cli
