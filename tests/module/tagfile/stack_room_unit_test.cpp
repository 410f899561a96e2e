// How much of the stack a read may use.
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <pthread.h>
#include <sys/resource.h>

#include "support/leak_tolerance.h"
#include "tagfile/stack_room.h"

namespace veltrace::test {

using namespace module;

namespace {

constexpr std::size_t kKilobyte = 1024;

/// Whether there is room this far below the caller.
__attribute__((noinline)) bool hasRoomBelow(StackRoom& room, std::size_t bytes) {
    auto* const space = static_cast<volatile char*>(__builtin_alloca(bytes));
    *space = 0;
    try {
        room.require();
    } catch (const StackExhausted&) {
        return false;
    }
    return true;
}

/// Runs `body` on a thread whose stack has exactly this size. The system may reuse the stack of an
/// earlier thread, which can be larger than requested.
void runOnStackOf(std::size_t stackBytes, const std::function<void()>& body) {
    constexpr std::size_t kPage = 4 * kKilobyte;
    const std::unique_ptr<void, decltype(&std::free)> stack(std::aligned_alloc(kPage, stackBytes),
                                                            &std::free);
    pthread_attr_t attributes;
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstack(&attributes, stack.get(), stackBytes), 0);
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body)),
              0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

/// Limits a resource of the process for its lifetime.
class Limited {
public:
    Limited(decltype(RLIMIT_AS) resource, rlim_t maximum) : resource_(resource) {
        getrlimit(resource_, &before_);
        const rlimit limit{maximum, before_.rlim_max};
        setrlimit(resource_, &limit);
    }
    Limited(const Limited&) = delete;
    Limited& operator=(const Limited&) = delete;
    ~Limited() { setrlimit(resource_, &before_); }

private:
    decltype(RLIMIT_AS) resource_;
    rlimit before_{};
};

TEST(StackRoom, ReservesAQuarterOfASmallStack) {
    runOnStackOf(512 * kKilobyte, [] {
        StackRoom room;
        EXPECT_TRUE(hasRoomBelow(room, kKilobyte));
        EXPECT_TRUE(hasRoomBelow(room, 350 * kKilobyte));
        EXPECT_FALSE(hasRoomBelow(room, 390 * kKilobyte));
    });
}

TEST(StackRoom, Reserves256KilobytesOfALargeStack) {
    runOnStackOf(8192 * kKilobyte, [] {
        StackRoom room;
        EXPECT_TRUE(hasRoomBelow(room, kKilobyte));
        EXPECT_TRUE(hasRoomBelow(room, (8192 - 256 - 32) * kKilobyte));
        EXPECT_FALSE(hasRoomBelow(room, (8192 - 256) * kKilobyte));
    });
}

// The system reads the bounds of the main thread's stack from a file.
TEST(StackRoom, Is128KilobytesIfTheSystemDoesNotReportTheBounds) {
    StackRoom room;
    {
        const Limited noMoreFiles(RLIMIT_NOFILE, 0);
        EXPECT_TRUE(hasRoomBelow(room, kKilobyte));
        EXPECT_TRUE(hasRoomBelow(room, 16 * kKilobyte));
    }
    EXPECT_TRUE(hasRoomBelow(room, 120 * kKilobyte));
    EXPECT_FALSE(hasRoomBelow(room, 136 * kKilobyte));
}

// AddressSanitizer maps more memory than the limit.
#ifndef VELTRACE_TEST_ADDRESS_SANITIZER
TEST(StackRoom, IsAtMostAQuarterOfTheMemoryLimit) {
    runOnStackOf(8192 * kKilobyte, [] {
        StackRoom room;
        {
            const Limited memory(RLIMIT_AS, 4 * 1024 * kKilobyte);
            EXPECT_TRUE(hasRoomBelow(room, kKilobyte));
            EXPECT_TRUE(hasRoomBelow(room, 16 * kKilobyte));
        }
        EXPECT_TRUE(hasRoomBelow(room, (1024 - 256 - 32) * kKilobyte));
        EXPECT_FALSE(hasRoomBelow(room, (1024 - 256) * kKilobyte));
    });
}
#endif

}  // namespace

}  // namespace veltrace::test
