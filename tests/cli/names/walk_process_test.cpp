#include "names/walk_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "descriptor.h"
#include "temporary_directory.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

/// A walk in a child process with pipes to the test. The roots must fit in a pipe.
class Walk {
public:
    explicit Walk(std::string_view roots) {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        EXPECT_EQ(pipe2(input.data(), O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(output.data(), O_CLOEXEC), 0);
        EXPECT_NE(fcntl(output[1], F_SETPIPE_SZ, 4096), -1);  // soon full
        EXPECT_EQ(write(input[1], roots.data(), roots.size()), static_cast<ssize_t>(roots.size()));
        close(input[1]);
        process_ = fork();
        if (process_ == 0) {
            close(output[0]);
            _exit(walkProcess(input[0], output[1], STDERR_FILENO));
        }
        close(input[0]);
        close(output[1]);
        names_ = Descriptor(output[0]);
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() {
        if (process_ != -1) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
    }

    /// The output of the next ten seconds, at most one block.
    [[nodiscard]] std::string read() const {
        pollfd waiting{names_.get(), POLLIN, 0};
        EXPECT_EQ(poll(&waiting, 1, 10000), 1);
        std::string block(100000, '\0');
        const ssize_t size = ::read(names_.get(), block.data(), block.size());
        block.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return block;
    }
    void stopReading() { names_ = Descriptor(); }
    int status() {
        int status = -1;
        waitpid(process_, &status, 0);
        process_ = -1;
        return status;
    }
    [[nodiscard]] pid_t process() const { return process_; }

private:
    pid_t process_ = -1;
    Descriptor names_;
};

TEST(WalkProcess, WritesANulAfterEachName) {
    Walk walk(std::string_view("a\0b\nc\0", 6));
    EXPECT_EQ(walk.read(), std::string("a\0b\nc\0", 6));
    EXPECT_EQ(walk.read(), "");
    EXPECT_EQ(walk.status(), kWalkedAll);
}

TEST(WalkProcess, WritesNamesBeforeItsEnd) {
    const test::TemporaryDirectory directory;
    const std::string image = directory.makeFile("a", "\xff\xd8");
    const std::string texts = directory.makeDirectory("texts");
    for (int i = 0; i < 300; ++i) {
        directory.makeFile("texts/" + std::to_string(i), "text");
    }
    // A walk of many seconds that finds nothing more.
    const Walk walk(image + '\0' + repeated(texts + '\0', 1500));
    EXPECT_EQ(walk.read(), image + '\0');
    EXPECT_EQ(waitpid(walk.process(), nullptr, WNOHANG), 0) << "the walk was over too early";
}

TEST(WalkProcess, EndsQuietlyWhenNobodyReads) {
    Walk walk(repeated("no file"s + '\0', 5000));
    walk.stopReading();
    const int status = walk.status();
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kWalkedPart);
}

TEST(WalkProcess, IgnoresInterrupts) {
    const std::string roots = repeated("no file"s + '\0', 5000);
    Walk walk(roots);
    std::string names = walk.read();
    EXPECT_EQ(kill(walk.process(), SIGINT), 0);
    for (std::string more = walk.read(); !more.empty(); more = walk.read()) {
        names += more;
    }
    EXPECT_EQ(names, roots);
    EXPECT_EQ(walk.status(), 0);
}

}  // namespace
}  // namespace veltrace::cli
