#include "names/directory_walk.h"

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "descriptor.h"
#include "names/all_names.h"
#include "names/image_signature.h"
#include "temporary_directory.h"

namespace veltrace::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* kImage = "\xff\xd8";

struct Findings {
    std::vector<std::string> names;
    std::vector<std::pair<std::string, std::string>> errors;
};

constexpr const char* kMemory = "/dev/shm";  // deep trees are slow on disks

class Collector : public WalkListener {
public:
    [[nodiscard]] bool recognises(int descriptor) override { return mayBeImage(descriptor); }
    void found(const std::string& name) override {
        findings.names.push_back(name);
        onFound();
    }
    void failed(std::string_view path, std::string_view reason) override {
        findings.errors.emplace_back(path, reason);
    }
    void step() override {}

    Findings findings;
    std::function<void()> onFound = [] {};
};

Findings walked(const std::string& root) {
    Collector collector;
    walk(root, collector);
    return collector.findings;
}

/// Makes `depth` nested directories of this name, and returns the innermost.
Descriptor makeNested(const std::string& outermost, const std::string& name, std::size_t depth) {
    Descriptor inner(open(outermost.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (std::size_t i = 0; i < depth; ++i) {
        EXPECT_EQ(mkdirat(inner.get(), name.c_str(), 0755), 0);
        inner = Descriptor(openat(inner.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
    return inner;
}

void makeImageIn(const Descriptor& directory, const std::string& name) {
    const Descriptor file(openat(directory.get(), name.c_str(), O_CREAT | O_WRONLY, 0644));
    EXPECT_EQ(write(file.get(), kImage, 2), 2);
}

TEST(DirectoryWalk, FindsImagesInTheOrderOfTheirBytesAtEachLevel) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("b");
    for (const char* name : {"c", "a", "b/z", "b/A", "b.tif", "\xff", "B"}) {
        directory.makeFile(name, kImage);
    }
    EXPECT_THAT(
        walked(directory.path()).names,
        ElementsAre(directory.at("B"), directory.at("a"), directory.at("b/A"), directory.at("b/z"),
                    directory.at("b.tif"), directory.at("c"), directory.at("\xff")));
}

TEST(DirectoryWalk, SkipsOtherFiles) {
    const test::TemporaryDirectory directory;
    directory.makeFile("a.tif", "text");
    directory.makeFile("b.tif", "");
    directory.makeFile("c.txt", kImage);
    const Findings findings = walked(directory.path());
    EXPECT_THAT(findings.names, ElementsAre(directory.at("c.txt")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST(DirectoryWalk, AddsNoSecondSlash) {
    const test::TemporaryDirectory directory;
    directory.makeFile("a", kImage);
    EXPECT_THAT(walked(directory.path() + "/").names, ElementsAre(directory.path() + "/a"));
    EXPECT_THAT(walked(directory.path() + "//").names, ElementsAre(directory.path() + "//a"));
}

TEST(DirectoryWalk, FindsNamesOfEveryKind) {
    const test::TemporaryDirectory directory;
    std::vector<std::string> expected;
    for (const std::string& name : test::oddNames()) {
        expected.push_back(directory.makeFile(name, kImage));
    }
    EXPECT_THAT(walked(directory.path()).names, testing::UnorderedElementsAreArray(expected));
}

TEST(DirectoryWalk, FollowsNoLinkBelowTheRoot) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("d");
    directory.makeFile("d/a", kImage);
    EXPECT_EQ(symlink("d", directory.at("to-directory").c_str()), 0);
    EXPECT_EQ(symlink("d/a", directory.at("to-file").c_str()), 0);
    EXPECT_EQ(symlink("nowhere", directory.at("to-nothing").c_str()), 0);
    EXPECT_EQ(symlink("..", directory.at("d/up").c_str()), 0);
    const Findings findings = walked(directory.path());
    EXPECT_THAT(findings.names, ElementsAre(directory.at("d/a")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST(DirectoryWalk, FollowsARootThatIsALink) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("d");
    directory.makeFile("d/a", kImage);
    EXPECT_EQ(symlink("d", directory.at("link").c_str()), 0);
    EXPECT_THAT(walked(directory.at("link")).names, ElementsAre(directory.at("link/a")));
}

TEST(DirectoryWalk, ReportsARootThatIsNotADirectoryUnexamined) {
    const test::TemporaryDirectory directory;
    for (const std::string& root :
         {directory.makeFile("text", "no image"), directory.at("nothing"), std::string()}) {
        EXPECT_THAT(walked(root).names, ElementsAre(root));
    }
}

TEST(DirectoryWalk, SkipsAFifo) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(mkfifo(directory.at("fifo").c_str(), 0644), 0);
    EXPECT_THAT(walked(directory.path()).names, IsEmpty());
    EXPECT_THAT(walked(directory.at("fifo")).names, ElementsAre(directory.at("fifo")));
}

TEST(DirectoryWalk, FindsFilesThatMayNotBeRead) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(chmod(directory.makeFile("a", "text").c_str(), 0), 0);
    directory.makeFile("b", kImage);
    const test::AsNobody nobody;
    EXPECT_THAT(walked(directory.path()).names, ElementsAre(directory.at("a"), directory.at("b")));
}

TEST(DirectoryWalk, FindsFilesWhoseDirectoryMayOnlyBeListed) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("d");
    directory.makeDirectory("d/inner");
    directory.makeFile("d/a", "text");
    directory.makeFile("e", kImage);
    EXPECT_EQ(chmod(directory.at("d").c_str(), 0444), 0);
    const test::AsNobody nobody;
    const Findings findings = walked(directory.path());
    EXPECT_THAT(findings.names, ElementsAre(directory.at("d/a"), directory.at("e")));
    EXPECT_THAT(findings.errors, ElementsAre(Pair(directory.at("d/inner"), "Permission denied")));
}

TEST(DirectoryWalk, ReportsADirectoryThatCannotBeOpenedAndContinues) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(chmod(directory.makeDirectory("d").c_str(), 0), 0);
    directory.makeFile("e", kImage);
    const test::AsNobody nobody;
    const Findings findings = walked(directory.path());
    EXPECT_THAT(findings.names, ElementsAre(directory.at("e")));
    EXPECT_THAT(findings.errors, ElementsAre(Pair(directory.at("d"), "Permission denied")));
    EXPECT_THAT(walked(directory.at("d")).errors,
                ElementsAre(Pair(directory.at("d"), "Permission denied")));
}

TEST(DirectoryWalk, GoesBeyondTheLimitsOfPathsAndDescriptors) {
    constexpr std::size_t kDepth = 3000;
    const test::TemporaryDirectory directory(kMemory);
    makeImageIn(makeNested(directory.path(), "dd", kDepth), "inner");
    directory.makeFile("dd/e", kImage);
    directory.makeFile("z", kImage);

    rlimit saved{};
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &saved), 0);
    const rlimit few{64, saved.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const Findings findings = walked(directory.path());
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &saved), 0);

    std::string inner = directory.path();
    for (std::size_t i = 0; i < kDepth; ++i) {
        inner += "/dd";
    }
    EXPECT_THAT(findings.names,
                ElementsAre(inner + "/inner", directory.at("dd/e"), directory.at("z")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST(DirectoryWalk, ReportsADirectoryWhoseNameLeavesNoRoom) {
    const test::TemporaryDirectory directory(kMemory);
    const std::string name(255, 'd');
    makeNested(directory.path(), name, 4100);
    directory.makeFile("z", kImage);
    const Findings findings = walked(directory.path());
    EXPECT_THAT(findings.names, ElementsAre(directory.at("z")));
    ASSERT_EQ(findings.errors.size(), 1U);
    // 4095 names of 256 bytes with their slash leave 256 bytes of 2^20, less than the root's name.
    EXPECT_EQ(findings.errors[0].first.size(), directory.path().size() + 4095 * 256);
    EXPECT_EQ(findings.errors[0].second, "nested too deeply");
}

TEST(DirectoryWalk, EndsWhenADirectoryIsMovedDuringTheWalk) {
    const test::TemporaryDirectory directory;
    directory.makeDirectory("away");
    directory.makeDirectory("walked");
    makeImageIn(makeNested(directory.at("walked"), "d", 40), "inner");
    directory.makeFile("walked/z", kImage);
    directory.makeFile("away/y", kImage);
    std::string moved = directory.at("walked");
    for (int i = 0; i < 10; ++i) {
        moved += "/d";
    }

    Collector collector;
    collector.onFound = [&] {
        EXPECT_EQ(std::rename(moved.c_str(), directory.at("away/x").c_str()), 0);
    };
    walk(directory.at("walked"), collector);
    const Findings& findings = collector.findings;
    EXPECT_EQ(findings.names.size(), 1U);
    ASSERT_EQ(findings.errors.size(), 1U);
    EXPECT_EQ(findings.errors[0].second, "moved during the walk, which ends here");
}

}  // namespace
}  // namespace veltrace::cli
