#include "worker/memory_watch.h"

#include <gtest/gtest.h>
#include <limits>
#include <new>

#include "worker/sanitizer.h"

namespace veltrace::cli {
namespace {

// More than any machine has. Volatile, so that the request is made.
volatile std::size_t tooMuch = std::numeric_limits<std::size_t>::max() / 4;

class MemoryWatchTest : public testing::Test {
protected:
    void SetUp() override {
        if (kHasAddressSanitizer) {
            GTEST_SKIP() << "AddressSanitizer ends the process instead";
        }
    }
};

TEST_F(MemoryWatchTest, AnAllocationThatSucceedsIsNotNoted) {
    const MemoryWatch watch;
    ::operator delete(::operator new(1000));
    EXPECT_FALSE(watch.ranOut());
}

TEST_F(MemoryWatchTest, AnAllocationThatFailsIsNotedUntilAReset) {
    MemoryWatch watch;
    EXPECT_THROW(::operator delete(::operator new(tooMuch)), std::bad_alloc);
    EXPECT_TRUE(watch.ranOut());
    watch.reset();
    EXPECT_FALSE(watch.ranOut());
}

TEST_F(MemoryWatchTest, AnAllocationThatMayFailIsNotedAndStillGivesNull) {
    const MemoryWatch watch;
    void* const block = ::operator new(tooMuch, std::nothrow);
    EXPECT_EQ(block, nullptr);
    EXPECT_TRUE(watch.ranOut());
}

TEST_F(MemoryWatchTest, TheHandlerOfBeforeComesBack) {
    const auto before = std::get_new_handler();
    {
        const MemoryWatch watch;
        EXPECT_NE(std::get_new_handler(), before);
    }
    EXPECT_EQ(std::get_new_handler(), before);
}

}  // namespace
}  // namespace veltrace::cli
