// Deep nesting is normal input, up to the end of the stack.
#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/nested_file.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kKilobyte = 1024;
constexpr std::size_t kUsualStack = 8192 * kKilobyte;

/// The number of directories inside each other, without recursion.
std::size_t depthOf(const ModuleRun& run) {
    std::size_t depth = 0;
    zephra::Value level = run.value({"DigitalCamera"});
    while (level) {
        ++depth;
        level = level.field(0, "DigitalCamera");
    }
    return depth;
}

bool readsWhole(std::size_t depth) {
    const LeakTolerance tolerance;
    const ModuleRun run(nestedExif(depth));
    if (run.error()) {
        EXPECT_EQ(*run.error(), unknownException());
        return false;
    }
    EXPECT_EQ(depthOf(run), depth);
    return true;
}

TEST(Nesting, TwoThousandLevelsFitTheUsualStack) {
    runOnStack(kUsualStack, [] {
        const ModuleRun run = quietRun(nestedExif(2000));
        EXPECT_EQ(depthOf(run), 2000U);
    });
}

// AddressSanitizer follows threads, not stacks that a program switches for itself.
#ifndef VELTRACE_TEST_ADDRESS_SANITIZER
TEST(Nesting, IsReadOnAStackThatTheSystemDoesNotKnow) {
    runOnForeignStack(1024 * kKilobyte, [] {
        const ModuleRun run = quietRun(nestedExif(20));
        EXPECT_EQ(depthOf(run), 20U);
    });
}

TEST(Nesting, WithoutEndIsAnUnknownExceptionOnAStackThatTheSystemDoesNotKnow) {
    runOnForeignStack(1024 * kKilobyte, [] {
        const LeakTolerance tolerance;
        const ModuleRun run(endlessExif());
        EXPECT_THAT(run.messages(), testing::ElementsAre(unknownException()));
    });
}
#endif

class NestingOnStack : public testing::TestWithParam<std::size_t> {};

TEST_P(NestingOnStack, WithoutEndIsAnUnknownException) {
    runOnStack(GetParam() * kKilobyte, [] {
        const LeakTolerance tolerance;
        const ModuleRun run(endlessExif());
        EXPECT_THAT(run.messages(), testing::ElementsAre(unknownException()));
    });
}

// Output, destruction and unwinding go as deep as the read did, so the deepest file that is read
// at all is the one that would find out if they needed more stack.
TEST_P(NestingOnStack, DeepestReadableFileIsDeliveredAndTheNextLevelIsRefused) {
    runOnStack(GetParam() * kKilobyte, [] {
        std::size_t readable = 0;
        std::size_t refused = 1;
        while (readsWhole(refused)) {
            readable = refused;
            refused *= 2;
        }
        while (refused - readable > 1) {
            const std::size_t middle = readable + (refused - readable) / 2;
            (readsWhole(middle) ? readable : refused) = middle;
        }
        EXPECT_GE(readable, 1U);
    });
}

INSTANTIATE_TEST_SUITE_P(Kilobytes, NestingOnStack, testing::Values(256, 1024, 8192));

}  // namespace

}  // namespace veltrace::test
