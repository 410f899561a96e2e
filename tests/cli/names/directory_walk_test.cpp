#include "names/directory_walk.h"

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "descriptor.h"
#include "descriptor_limit.h"
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

class DirectoryWalk : public testing::Test {
protected:
    const test::TemporaryDirectory directory_;
};

TEST_F(DirectoryWalk, FindsImagesInTheOrderOfTheirBytesAtEachLevel) {
    directory_.makeDirectory("b");
    for (const char* name : {"c", "a", "b/z", "b/A", "b.tif", "\xff", "B"}) {
        directory_.makeFile(name, kImage);
    }
    EXPECT_THAT(walked(directory_.path()).names,
                ElementsAre(directory_.at("B"), directory_.at("a"), directory_.at("b/A"),
                            directory_.at("b/z"), directory_.at("b.tif"), directory_.at("c"),
                            directory_.at("\xff")));
}

TEST_F(DirectoryWalk, SkipsOtherFiles) {
    directory_.makeFile("a.tif", "text");
    directory_.makeFile("b.tif", "");
    directory_.makeFile("c.txt", kImage);
    const Findings findings = walked(directory_.path());
    EXPECT_THAT(findings.names, ElementsAre(directory_.at("c.txt")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST_F(DirectoryWalk, AddsNoSecondSlash) {
    directory_.makeFile("a", kImage);
    EXPECT_THAT(walked(directory_.path() + "/").names, ElementsAre(directory_.path() + "/a"));
    EXPECT_THAT(walked(directory_.path() + "//").names, ElementsAre(directory_.path() + "//a"));
}

TEST_F(DirectoryWalk, FindsNamesOfEveryKind) {
    std::vector<std::string> expected;
    for (const std::string& name : test::oddNames()) {
        expected.push_back(directory_.makeFile(name, kImage));
    }
    EXPECT_THAT(walked(directory_.path()).names, testing::UnorderedElementsAreArray(expected));
}

TEST_F(DirectoryWalk, FollowsNoLinkBelowTheRoot) {
    directory_.makeDirectory("d");
    directory_.makeFile("d/a", kImage);
    EXPECT_EQ(symlink("d", directory_.at("to-directory").c_str()), 0);
    EXPECT_EQ(symlink("d/a", directory_.at("to-file").c_str()), 0);
    EXPECT_EQ(symlink("nowhere", directory_.at("to-nothing").c_str()), 0);
    EXPECT_EQ(symlink("..", directory_.at("d/up").c_str()), 0);
    const Findings findings = walked(directory_.path());
    EXPECT_THAT(findings.names, ElementsAre(directory_.at("d/a")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST_F(DirectoryWalk, FollowsARootThatIsALink) {
    directory_.makeDirectory("d");
    directory_.makeFile("d/a", kImage);
    EXPECT_EQ(symlink("d", directory_.at("link").c_str()), 0);
    EXPECT_THAT(walked(directory_.at("link")).names, ElementsAre(directory_.at("link/a")));
}

TEST_F(DirectoryWalk, ReportsARootThatIsNotADirectoryUnexamined) {
    for (const std::string& root :
         {directory_.makeFile("text", "no image"), directory_.at("nothing"), std::string()}) {
        EXPECT_THAT(walked(root).names, ElementsAre(root));
    }
}

TEST_F(DirectoryWalk, SkipsAFifo) {
    EXPECT_EQ(mkfifo(directory_.at("fifo").c_str(), 0644), 0);
    EXPECT_THAT(walked(directory_.path()).names, IsEmpty());
    EXPECT_THAT(walked(directory_.at("fifo")).names, ElementsAre(directory_.at("fifo")));
}

TEST_F(DirectoryWalk, FindsFilesThatMayNotBeRead) {
    EXPECT_EQ(chmod(directory_.makeFile("a", "text").c_str(), 0), 0);
    directory_.makeFile("b", kImage);
    const test::AsNobody nobody;
    EXPECT_THAT(walked(directory_.path()).names,
                ElementsAre(directory_.at("a"), directory_.at("b")));
}

TEST_F(DirectoryWalk, FindsFilesWhoseDirectoryMayOnlyBeListed) {
    directory_.makeDirectory("d");
    directory_.makeDirectory("d/inner");
    directory_.makeFile("d/a", "text");
    directory_.makeFile("e", kImage);
    EXPECT_EQ(chmod(directory_.at("d").c_str(), 0444), 0);
    const test::AsNobody nobody;
    const Findings findings = walked(directory_.path());
    EXPECT_THAT(findings.names, ElementsAre(directory_.at("d/a"), directory_.at("e")));
    EXPECT_THAT(findings.errors, ElementsAre(Pair(directory_.at("d/inner"), "Permission denied")));
}

TEST_F(DirectoryWalk, ReportsADirectoryThatCannotBeOpenedAndContinues) {
    EXPECT_EQ(chmod(directory_.makeDirectory("d").c_str(), 0), 0);
    directory_.makeFile("e", kImage);
    const test::AsNobody nobody;
    const Findings findings = walked(directory_.path());
    EXPECT_THAT(findings.names, ElementsAre(directory_.at("e")));
    EXPECT_THAT(findings.errors, ElementsAre(Pair(directory_.at("d"), "Permission denied")));
    EXPECT_THAT(walked(directory_.at("d")).errors,
                ElementsAre(Pair(directory_.at("d"), "Permission denied")));
}

TEST_F(DirectoryWalk, GoesBeyondTheLimitsOfPathsAndDescriptors) {
    constexpr std::size_t kDepth = 3000;
    const test::TemporaryDirectory directory(kMemory);
    makeImageIn(makeNested(directory.path(), "dd", kDepth), "inner");
    directory.makeFile("dd/e", kImage);
    directory.makeFile("z", kImage);

    const test::DescriptorLimit few(64);
    const Findings findings = walked(directory.path());

    std::string inner = directory.path();
    for (std::size_t i = 0; i < kDepth; ++i) {
        inner += "/dd";
    }
    EXPECT_THAT(findings.names,
                ElementsAre(inner + "/inner", directory.at("dd/e"), directory.at("z")));
    EXPECT_THAT(findings.errors, IsEmpty());
}

TEST_F(DirectoryWalk, ReportsADirectoryWhoseNameLeavesNoRoom) {
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

TEST_F(DirectoryWalk, EndsWhenADirectoryIsMovedDuringTheWalk) {
    directory_.makeDirectory("away");
    directory_.makeDirectory("walked");
    makeImageIn(makeNested(directory_.at("walked"), "d", 40), "inner");
    directory_.makeFile("walked/z", kImage);
    directory_.makeFile("away/y", kImage);
    std::string moved = directory_.at("walked");
    for (int i = 0; i < 10; ++i) {
        moved += "/d";
    }

    Collector collector;
    collector.onFound = [&] {
        EXPECT_EQ(std::rename(moved.c_str(), directory_.at("away/x").c_str()), 0);
    };
    walk(directory_.at("walked"), collector);
    const Findings& findings = collector.findings;
    EXPECT_EQ(findings.names.size(), 1U);
    ASSERT_EQ(findings.errors.size(), 1U);
    EXPECT_EQ(findings.errors[0].second, "moved during the walk, which ends here");
}

}  // namespace
}  // namespace veltrace::cli
