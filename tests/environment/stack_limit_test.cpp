// Stacks of every size: a file is read in full or ends as stated.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sys/resource.h>

#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/nested_file.h"
#include "sweep/seeds.h"
#include "sweep/value_difference.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kSmallStack = std::size_t{64} * 1024;
constexpr std::size_t kUsualStack = std::size_t{8192} * 1024;

std::size_t cases = 0;

class PrintsCases : public testing::Test {
protected:
    static void TearDownTestSuite() {
        std::cout << "stacks: " << cases << " calls so far in this process\n";
    }
};

zephra::CallResult callOn(const MemoryFile& file) {
    ++cases;
    const zephra::Argument name{file.name()};
    const LeakTolerance tolerance;  // a read that runs out of stack leaves its reader behind
    return zephra::Host(strictHost()).call(moduleUnderTest(), {&name, 1});
}

/// On a thread that has this much and does nothing else.
zephra::CallResult callOnStack(std::size_t stackBytes, const MemoryFile& file) {
    std::optional<zephra::CallResult> result;
    runOnStack(stackBytes, [&] { result.emplace(callOn(file)); });
    return *std::move(result);
}

bool isFlat(const Seed& seed) {
    return !seed.name.ends_with("Camera") && !seed.name.ends_with("SubImages") &&
           !seed.name.ends_with("DamagedEntries");
}

void expectSame(const zephra::CallResult& result, const zephra::CallResult& expected) {
    EXPECT_EQ(differenceOf(result.output(), expected.output()), "");
    EXPECT_EQ(result.warnings(), expected.warnings());
    EXPECT_EQ(result.error(), expected.error());
    EXPECT_EQ(result.leftovers(), expected.leftovers());
    EXPECT_THAT(result.misuses(), testing::IsEmpty());
}

bool ranOut(const zephra::CallResult& result) {
    return result.error() == unknownException() && !result.output();
}

/// Whether all levels are there. Without recursion.
bool isWhole(const zephra::CallResult& result, std::size_t depth) {
    zephra::Value level = result.output();
    for (std::size_t i = 0; i < depth; ++i) {
        level = level.field(0, "DigitalCamera");
    }
    const zephra::Value innermost = level.field(0, "MeteringMode");
    return innermost && innermost.numbers().front() == 5 && !result.error();
}

constexpr std::size_t kDepths[] = {10, 1'000, 100'000};

class SmallStack : public PrintsCases {};

TEST_F(SmallStack, ReadsFlatFilesInFull) {
    for (const Seed& seed : seeds()) {
        if (isFlat(seed)) {
            SCOPED_TRACE(seed.name);
            const MemoryFile file(seed.little);
            expectSame(callOnStack(kSmallStack, file), callOnStack(kUsualStack, file));
        }
    }
}

TEST_F(SmallStack, ReadsNestedFilesInFullOrEndsAsStated) {
    for (const Seed& seed : seeds()) {
        if (!isFlat(seed)) {
            SCOPED_TRACE(seed.name);
            const MemoryFile file(seed.little);
            const zephra::CallResult result = callOnStack(kSmallStack, file);
            if (!ranOut(result)) {
                expectSame(result, callOnStack(kUsualStack, file));
            }
        }
    }
    for (const std::size_t depth : kDepths) {
        const zephra::CallResult result = callOnStack(kSmallStack, MemoryFile(nestedExif(depth)));
        EXPECT_TRUE(ranOut(result) || isWhole(result, depth)) << depth;
    }
    EXPECT_TRUE(ranOut(callOnStack(kSmallStack, MemoryFile(endlessExif()))));
}

/// On the first thread of this process, with the stack that it was given.
class GivenStack : public PrintsCases {
protected:
    static bool isUnlimited(decltype(RLIMIT_AS) resource) {
        rlimit limit{};
        EXPECT_EQ(getrlimit(resource, &limit), 0);
        return limit.rlim_cur == RLIM_INFINITY;
    }
};

TEST_F(GivenStack, ReadsFlatFilesInFull) {
    for (const Seed& seed : seeds()) {
        if (isFlat(seed)) {
            SCOPED_TRACE(seed.name);
            const MemoryFile file(seed.little);
            expectSame(callOn(file), callOnStack(kUsualStack, file));
        }
    }
}

TEST_F(GivenStack, ReadsNestedFilesInFullOrEndsAsStated) {
    EXPECT_TRUE(isWhole(callOn(MemoryFile(nestedExif(kDepths[0]))), kDepths[0]));
    for (const std::size_t depth : kDepths) {
        const zephra::CallResult result = callOn(MemoryFile(nestedExif(depth)));
        EXPECT_TRUE(ranOut(result) || isWhole(result, depth)) << depth;
    }
}

TEST_F(GivenStack, EndsNestingWithoutEndAsStated) {
    if (isUnlimited(RLIMIT_STACK) && isUnlimited(RLIMIT_AS)) {
        GTEST_SKIP() << "it would take all the memory there is";
    }
    EXPECT_TRUE(ranOut(callOn(MemoryFile(endlessExif()))));
}

/// Whether the tests above pass in a process that starts with these limits.
bool passesWith(const std::string& limits) {
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    return std::system(
               (limits + " && exec '" + self + "' --gtest_brief=1 --gtest_filter=GivenStack.*")
                   .c_str()) == 0;
}

TEST(StackLimit, MayBe256Kilobytes) {
    EXPECT_TRUE(passesWith("ulimit -S -s 256"));
}

TEST(StackLimit, MayBe8Megabytes) {
    EXPECT_TRUE(passesWith("ulimit -S -s 8192"));
}

// AddressSanitizer takes more memory than any limit.
#ifndef VELTRACE_TEST_ADDRESS_SANITIZER
TEST(StackLimit, MayBeNoneWhereMemoryHasALimit) {
    rlimit stack{};
    getrlimit(RLIMIT_STACK, &stack);
    if (stack.rlim_max != RLIM_INFINITY) {
        GTEST_SKIP() << "this user must have a limit";
    }
    for (const char* const kilobytes : {"100000", "500000"}) {
        EXPECT_TRUE(passesWith("ulimit -S -s unlimited && ulimit -v " + std::string(kilobytes)))
            << kilobytes;
    }
}
#endif

}  // namespace

}  // namespace veltrace::test
