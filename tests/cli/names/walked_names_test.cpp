#include "names/walked_names.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "descriptor.h"
#include "names/all_names.h"
#include "names/walk_process.h"
#include "temporary_directory.h"

namespace veltrace::cli {
namespace {

using test::allNames;
using test::namesErrorOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::string> kWalk = {"test", "--walk-names"};

/// The work of the process that a test starts: it is this program, before `main`.
bool actAsWalk() {
    const std::string arguments = test::contentOf("/proc/self/cmdline");
    if (arguments == std::string("test\0--walk-names\0", 18)) {
        _exit(walkProcess(STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO));
    }
    if (arguments.starts_with(std::string("test\0", 5))) {
        static_cast<void>(!write(STDOUT_FILENO, "whole\0torn", 10));
        if (arguments.find("--fail") != std::string::npos) {
            _exit(4);
        }
        if (arguments.find("--die") != std::string::npos) {
            std::raise(SIGKILL);
        }
        pause();
    }
    return false;
}

[[maybe_unused]] const bool kIsWalk = actAsWalk();

/// Collects standard error.
class ErrorText {
public:
    ErrorText() { testing::internal::CaptureStderr(); }
    static std::string text() { return testing::internal::GetCapturedStderr(); }
};

TEST(WalkedNames, AreThoseOfEachRootInOrder) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("d");
    directory.makeFile("d/b", "\xff\xd8");
    directory.makeFile("d/a", "\xff\xd8");
    directory.makeFile("d/text", "text");
    WalkedNames names({"z", directory.at("d"), "", directory.at("d/text")}, kWalk);
    EXPECT_THAT(allNames(names), ElementsAre("z", directory.at("d/a"), directory.at("d/b"), "",
                                             directory.at("d/text")));
    EXPECT_TRUE(names.isComplete());
    std::string name;
    EXPECT_EQ(names.next(name), NameSource::State::end);
}

TEST(WalkedNames, WithoutRootsAreNone) {
    WalkedNames names({}, kWalk);
    EXPECT_THAT(allNames(names), IsEmpty());
}

TEST(WalkedNames, KeepEveryByte) {
    WalkedNames names(test::oddNames(), kWalk);
    EXPECT_THAT(allNames(names), ElementsAreArray(test::oddNames()));
}

TEST(WalkedNames, MayHaveMoreRootsThanFitInAPipe) {
    std::vector<std::string> roots;
    for (int i = 0; i < 20000; ++i) {
        roots.push_back("no such file, number " + std::to_string(i));
    }
    WalkedNames names(roots, kWalk);
    EXPECT_EQ(allNames(names), roots);
}

TEST(WalkedNames, ReportWhatCouldNotBeWalked) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(chmod(directory.makeDirectory("d\x1b").c_str(), 0), 0);
    directory.makeFile("e", "\xff\xd8");
    const test::AsNobody nobody;
    const ErrorText error;
    WalkedNames names({directory.path()}, kWalk);
    EXPECT_THAT(allNames(names), ElementsAre(directory.at("e")));
    EXPECT_FALSE(names.isComplete());
    EXPECT_EQ(ErrorText::text(),
              "veltrace: cannot walk " + directory.path() + "/d\\x1b: Permission denied\n");
}

TEST(WalkedNames, EndWithAnErrorWhenTheProcessFailsOrIsKilled) {
    for (const char* how : {"--fail", "--die"}) {
        WalkedNames names({}, {"test", how});
        std::vector<std::string> found;
        EXPECT_EQ(namesErrorOf([&] {
                      std::string name;
                      for (auto state = names.next(name); state != NameSource::State::end;
                           state = names.next(name)) {
                          if (state == NameSource::State::name) {
                              found.push_back(name);
                          }
                      }
                  }),
                  "the walk of the directories was interrupted");
        EXPECT_THAT(found, ElementsAre("whole"));
    }
}

TEST(WalkedNames, EndTheirProcess) {
    pid_t process = -1;
    {
        WalkedNames names({}, {"test", "--stay"});
        std::string name;
        process = names.process();
        EXPECT_EQ(kill(process, 0), 0);
    }
    EXPECT_EQ(kill(process, 0), -1);
    EXPECT_EQ(errno, ESRCH);
}

TEST(WalkedNames, LeaveNoDescriptorBehind) {
    const auto lowestFree = [] { return Descriptor(dup(STDERR_FILENO)).get(); };
    const int before = lowestFree();
    {
        WalkedNames names({"a"}, kWalk);
        EXPECT_THAT(allNames(names), ElementsAre("a"));
    }
    EXPECT_EQ(lowestFree(), before);
}

}  // namespace
}  // namespace veltrace::cli
