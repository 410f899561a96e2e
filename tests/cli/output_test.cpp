#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "descriptor.h"
#include "output_file.h"
#include "temporary_directory.h"

namespace veltrace::cli {
namespace {

using test::contentOf;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> namesIn(const std::string& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

template <class Action>
std::string outputErrorOf(Action action) {
    try {
        action();
    } catch (const OutputError& error) {
        return error.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// Replaces standard output.
class OtherOutput {
public:
    explicit OtherOutput(int descriptor) : saved_(dup(STDOUT_FILENO)) {
        dup2(descriptor, STDOUT_FILENO);
    }
    OtherOutput(const OtherOutput&) = delete;
    OtherOutput& operator=(const OtherOutput&) = delete;
    ~OtherOutput() {
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }

private:
    int saved_;
};

class OutputFileTest : public testing::Test {
protected:
    const test::TemporaryDirectory directory_;
};

TEST_F(OutputFileTest, AppearsWhenItIsComplete) {
    OutputFile output(directory_.at("out"));
    output.write("one ");
    output.write("");
    output.write("two");
    EXPECT_THAT(namesIn(directory_.path()), testing::Not(testing::Contains("out")));
    output.commit();
    EXPECT_THAT(namesIn(directory_.path()), UnorderedElementsAre("out"));
    EXPECT_EQ(contentOf(directory_.at("out")), "one two");
}

TEST_F(OutputFileTest, LeavesNothingBehindUnlessCompleted) {
    directory_.makeFile("old", "old");
    for (const char* name : {"new", "old"}) {
        OutputFile output(directory_.at(name));
        output.write("lost");
    }
    EXPECT_THAT(namesIn(directory_.path()), UnorderedElementsAre("old"));
    EXPECT_EQ(contentOf(directory_.at("old")), "old");
}

TEST_F(OutputFileTest, LeavesNothingBehindWhenTheProcessIsKilled) {
    const pid_t process = fork();
    if (process == 0) {
        OutputFile output(directory_.at("out"));
        output.write("lost");
        std::raise(SIGKILL);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_THAT(namesIn(directory_.path()), IsEmpty());
}

TEST_F(OutputFileTest, ReplacesAnotherAndKeepsItsMode) {
    const std::string path = directory_.makeFile("out", "a longer text");
    EXPECT_EQ(chmod(path.c_str(), 0604), 0);
    OutputFile output(path);
    output.write("new");
    EXPECT_EQ(contentOf(path), "a longer text");
    output.commit();
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(modeOf(path), 0604U);
}

TEST_F(OutputFileTest, ANewOneHasTheModeOfTheUmask) {
    const mode_t saved = umask(027);
    OutputFile output(directory_.at("out"));
    output.commit();
    umask(saved);
    EXPECT_EQ(modeOf(directory_.at("out")), 0640U);
}

TEST_F(OutputFileTest, APartialOneLeavesTheOldOne) {
    directory_.makeFile("out", "old");
    directory_.makeFile("out.partial", "older");
    OutputFile output(directory_.at("out"));
    output.write("half");
    output.keepPartial();
    EXPECT_THAT(namesIn(directory_.path()), UnorderedElementsAre("out", "out.partial"));
    EXPECT_EQ(contentOf(directory_.at("out")), "old");
    EXPECT_EQ(contentOf(directory_.at("out.partial")), "half");
}

TEST_F(OutputFileTest, ReplacesTheTargetOfALink) {
    directory_.makeDirectory("d");
    directory_.makeFile("d/out", "old");
    EXPECT_EQ(symlink("d/out", directory_.at("link").c_str()), 0);
    OutputFile output(directory_.at("link"));
    output.write("new");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(directory_.at("link")));
    EXPECT_EQ(contentOf(directory_.at("d/out")), "new");
}

TEST_F(OutputFileTest, MayHaveANameOfAnyKind) {
    for (const std::string& name : {std::string(255, 'x'), std::string("new\nline\x1b\xff")}) {
        OutputFile output(directory_.at(name));
        output.write("text");
        output.commit();
        EXPECT_EQ(contentOf(directory_.at(name)), "text");
    }
}

TEST_F(OutputFileTest, ANameWithoutADirectoryIsInTheCurrentOne) {
    const auto saved = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
    OutputFile output("-out");
    output.write("text");
    output.commit();
    std::filesystem::current_path(saved);
    EXPECT_EQ(contentOf(directory_.at("-out")), "text");
}

TEST_F(OutputFileTest, OnlyRegularFilesAreReplaced) {
    EXPECT_EQ(mkfifo(directory_.at("fifo").c_str(), 0644), 0);
    const Descriptor reader(open(directory_.at("fifo").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    OutputFile output(directory_.at("fifo"));
    output.write("text");
    std::array<char, 9> read{};
    EXPECT_EQ(::read(reader.get(), read.data(), read.size()), 4);
    EXPECT_STREQ(read.data(), "text");
    output.commit();
    EXPECT_THAT(namesIn(directory_.path()), UnorderedElementsAre("fifo"));

    OutputFile nothing("/dev/null");
    nothing.write("text");
    nothing.keepPartial();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_FALSE(std::filesystem::exists("/dev/null.partial"));
}

TEST_F(OutputFileTest, ThatCannotBeOpenedIsAnErrorAtOnce) {
    EXPECT_EQ(symlink("nothing", directory_.at("link").c_str()), 0);
    const std::string start = "cannot write " + directory_.path();
    EXPECT_EQ(outputErrorOf([&] { OutputFile(directory_.at("no\n/out")); }),
              start + "/no\\n/out: No such file or directory");
    EXPECT_EQ(outputErrorOf([&] { OutputFile(directory_.at("link")); }),
              start + "/link: No such file or directory");
    EXPECT_EQ(outputErrorOf([&] { OutputFile{directory_.path()}; }), start + ": Is a directory");
    EXPECT_EQ(outputErrorOf([] { OutputFile(""); }), "cannot write : No such file or directory");
}

TEST_F(OutputFileTest, WithoutPermissionIsAnErrorAtOnce) {
    const std::string readOnly = directory_.makeFile("out", "old");
    EXPECT_EQ(chmod(readOnly.c_str(), 0444), 0);
    EXPECT_EQ(chmod(directory_.path().c_str(), 0777), 0);
    directory_.makeDirectory("closed");
    const test::AsNobody nobody;
    EXPECT_EQ(outputErrorOf([&] { OutputFile{readOnly}; }),
              "cannot write " + readOnly + ": Permission denied");
    EXPECT_EQ(outputErrorOf([&] { OutputFile(directory_.at("closed/out")); }),
              "cannot write " + directory_.at("closed/out") + ": Permission denied");
}

TEST_F(OutputFileTest, AFullDeviceIsAnErrorWithItsReason) {
    OutputFile output("/dev/full");
    EXPECT_EQ(outputErrorOf([&] { output.write("text"); }),
              "cannot write /dev/full: No space left on device");
}

TEST_F(OutputFileTest, ThatCannotBeRenamedIsAnErrorAndLeavesNothing) {
    {
        OutputFile output(directory_.at("out"));
        output.write("text");
        directory_.makeDirectory("out");
        EXPECT_EQ(outputErrorOf([&] { output.commit(); }),
                  "cannot write " + directory_.at("out") + ": Is a directory");
    }
    EXPECT_THAT(namesIn(directory_.path()), UnorderedElementsAre("out"));
}

TEST_F(OutputFileTest, IsStandardOutputWithoutAName) {
    const Descriptor file(open(directory_.makeFile("out", "").c_str(), O_WRONLY | O_CLOEXEC));
    {
        const OtherOutput other(file.get());
        OutputFile output;
        output.write("text");
        output.commit();
    }
    EXPECT_EQ(contentOf(directory_.at("out")), "text");
}

TEST_F(OutputFileTest, ThatNobodyReadsIsASpecialError) {
    Pipe pipe = makePipe();
    const OtherOutput other(pipe.writeEnd.get());
    pipe.readEnd = Descriptor();
    const auto savedHandler = std::signal(SIGPIPE, SIG_IGN);
    OutputFile output;
    EXPECT_THROW(output.write("text"), OutputClosed);
    static_cast<void>(std::signal(SIGPIPE, savedHandler));
}

TEST_F(OutputFileTest, WithoutStandardOutputIsAnErrorAtOnce) {
    const OtherOutput other(STDERR_FILENO);
    close(STDOUT_FILENO);
    EXPECT_EQ(outputErrorOf([] { OutputFile(); }), "cannot write the output: Bad file descriptor");
}

TEST_F(OutputFileTest, WaitsForAReaderThatIsSlow) {
    const Pipe pipe = makePipe();
    EXPECT_EQ(fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
    const std::string text(300000, 't');
    const pid_t process = fork();
    if (process == 0) {
        dup2(pipe.writeEnd.get(), STDOUT_FILENO);
        OutputFile output;
        output.write(text);
        _exit(0);
    }
    std::string all;
    std::string block(5000, '\0');
    while (all.size() < text.size()) {
        const ssize_t size = read(pipe.readEnd.get(), block.data(), block.size());
        if (size <= 0) {
            break;
        }
        all.append(block, 0, static_cast<std::size_t>(size));
    }
    EXPECT_EQ(all, text);
    int status = 0;
    waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace veltrace::cli
