// A host without standard streams: the module's files get their numbers.
#include <fcntl.h>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

#include "cli/temporary_directory.h"
#include "support/file_test.h"
#include "sweep/seeds.h"
#include "sweep/value_difference.h"

namespace veltrace::test {

namespace {

zephra::CallResult resultOf(const std::string& name) {
    const zephra::Argument argument{name};
    return zephra::Host(strictHost()).call(moduleUnderTest(), {&argument, 1});
}

bool isSame(const zephra::CallResult& left, const zephra::CallResult& right) {
    return differenceOf(left.output(), right.output()).empty() &&
           left.warnings() == right.warnings() && left.error() == right.error() &&
           left.leftovers() == right.leftovers() && right.misuses().empty();
}

bool areClosed(const std::vector<int>& descriptors) {
    for (const int descriptor : descriptors) {
        if (fcntl(descriptor, F_GETFD) != -1) {
            return false;
        }
    }
    return true;
}

/// In a process of its own: whether the file reads as before once these are closed, and nothing
/// takes their places for good.
bool readsTheSameWithout(const std::vector<int>& descriptors, const std::string& name) {
    const pid_t child = fork();
    if (child == 0) {
        const zephra::CallResult before = resultOf(name);
        for (const int descriptor : descriptors) {
            close(descriptor);
        }
        const bool isGood = isSame(before, resultOf(name)) && areClosed(descriptors);
        _exit(isGood ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status == 0;
}

TEST(ClosedDescriptors, ChangeNeitherResultNorFile) {
    const std::vector<std::vector<int>> combinations = {{0},    {1},    {2},      {0, 1},
                                                        {0, 2}, {1, 2}, {0, 1, 2}};
    const cli::test::TemporaryDirectory directory;
    std::size_t cases = 0;
    for (const Seed& seed : seeds()) {
        const std::string content(seed.big.begin(), seed.big.end());
        const std::string name = directory.makeFile(seed.name, content);
        for (const std::vector<int>& closed : combinations) {
            ++cases;
            EXPECT_TRUE(readsTheSameWithout(closed, name)) << seed.name;
        }
        EXPECT_EQ(cli::test::contentOf(name), content) << seed.name;
    }
    for (const std::vector<int>& closed : combinations) {
        ++cases;
        EXPECT_TRUE(readsTheSameWithout(closed, directory.at("gone")));
    }
    std::cout << "closed descriptors: " << cases << " processes\n";
}

}  // namespace

}  // namespace veltrace::test
