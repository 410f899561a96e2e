// What the module does not catch: failures of a reader's constructor and destructor. A file that
// changes during the call shows them.
#include <functional>
#include <thread>

#include "support/file_test.h"
#include "support/paced_file.h"

namespace veltrace::test {

namespace {

const zephra::Message kUnconverted =
    message("ZEPHRA:host:foreignException",
            "The module threw an exception of type veltrace::module::VeltraceFatalError");

/// Runs the module on a file while `script` feeds it.
ModuleRun pacedRun(PacedFile& file, const std::function<void()>& script) {
    const std::vector<zephra::Argument> arguments{file.name()};
    std::thread pacer([&file, &script] {
        script();
        file.end();
    });
    ModuleRun run(arguments);
    pacer.join();
    return run;
}

// A first byte that was read is with the format test, which waits for the second.

TEST(UnguardedStep, FileWithoutStatusReachesTheHostUnconvertedAndLeavesTheName) {
    PacedFile file;
    const ModuleRun run = pacedRun(file, [&file] {
        file.feedAndWait({0xFF});
        file.vanish();
        file.feed({0xD8});
    });
    EXPECT_THAT(run.messages(), ElementsAre(kUnconverted));
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers().blocks, 1U);
}

TEST(UnguardedStep, FileThatNoLongerOpensReachesTheHostUnconvertedAndLeavesTheName) {
    PacedFile file;
    const std::ptrdiff_t descriptors = openDescriptors();
    const ModuleRun run = pacedRun(file, [&file] {
        file.feedAndWait({0xFF});
        file.refuseToOpen();
        file.feed({0xD8});
    });
    EXPECT_THAT(run.messages(), ElementsAre(kUnconverted));
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers().blocks, 1U);
    EXPECT_EQ(openDescriptors(), descriptors - 1) << "the end that feeds the file is closed";
}

// The format test takes the first two bytes, so what follows is with the reader, which waits for
// one byte more when its stream is closed.

TEST(UnguardedStep, FailingCloseReachesTheHostUnconvertedAfterTheNameIsFreed) {
    PacedFile file;
    const ModuleRun run = pacedRun(file, [&file] {
        file.feedAndWait({0xFF, 0xD8});
        file.feedAndWait({0xFF, 0xD8, 0xFF, 0xDB, 0});
        file.closeStreams();
        file.feed({2});
    });
    EXPECT_THAT(run.messages(), ElementsAre(kUnconverted));
    EXPECT_EQ(run.leftovers().blocks, 0U);
}

TEST(UnguardedStep, FailingCloseAfterAFatalErrorTakesItsPlaceAndLeavesTheName) {
    PacedFile file;
    const ModuleRun run = pacedRun(file, [&file] {
        file.feedAndWait({0xFF, 0xD8});
        file.feedAndWait({0xFF, 0xD8, 0});
        file.closeStreams();
        file.feed({0xE1});
    });
    EXPECT_THAT(run.messages(), ElementsAre(kUnconverted));
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers().blocks, 1U);
}

}  // namespace

}  // namespace veltrace::test
