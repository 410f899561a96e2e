#include "names/walked_names.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "names/walk_process.h"

namespace veltrace::cli {
namespace {

[[noreturn]] void failToStart(int error) {
    throw NamesError("cannot start the walk of the directories: " +
                     std::generic_category().message(error));
}

/// A file in memory: the process can read all roots at its leisure, however many.
Descriptor stored(const std::vector<std::string>& roots) {
    Descriptor file(memfd_create("roots", MFD_CLOEXEC));
    if (!file.isOpen()) {
        failToStart(errno);
    }
    for (const std::string& root : roots) {
        // With the NUL behind it. A file in memory takes all or fails.
        const auto size = static_cast<ssize_t>(root.size() + 1);
        if (write(file.get(), root.c_str(), root.size() + 1) != size) {
            failToStart(errno);
        }
    }
    if (lseek(file.get(), 0, SEEK_SET) != 0) {
        failToStart(errno);
    }
    return file;
}

class SpawnActions {
public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    void duplicate(int from, int to) {
        if (const int error = posix_spawn_file_actions_adddup2(&actions_, from, to)) {
            failToStart(error);
        }
    }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

pid_t start(const std::vector<std::string>& command, int input, int output) {
    SpawnActions actions;
    actions.duplicate(input, STDIN_FILENO);
    actions.duplicate(output, STDOUT_FILENO);
    std::vector<std::string> words = command;
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t process = -1;
    if (const int error =
            posix_spawn(&process, "/proc/self/exe", actions.get(), nullptr, argv.data(), environ)) {
        failToStart(error);
    }
    return process;
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        failToStart(errno);
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

NameReader readerOf(const std::vector<std::string>& roots, const std::vector<std::string>& command,
                    pid_t& process) {
    const Descriptor input = stored(roots);
    Pipe pipe = makePipe();
    process = start(command, input.get(), pipe.writeEnd.get());
    return {std::move(pipe.readEnd), '\0', "the walk of the directories"};
}

}  // namespace

WalkedNames::WalkedNames(const std::vector<std::string>& roots,
                         const std::vector<std::string>& command)
    : reader_(readerOf(roots, command, process_)) {}

WalkedNames::~WalkedNames() {
    if (process_ != -1) {
        kill(process_, SIGKILL);
        static_cast<void>(reap());
    }
}

NameSource::State WalkedNames::next(std::string& name) {
    if (reader_.take(name)) {
        return State::name;
    }
    if (isAtEnd_) {
        return State::end;
    }
    const NameReader::Read read = reader_.read();
    if (read == NameReader::Read::end) {
        isAtEnd_ = true;
        const int status = reap();
        if (!WIFEXITED(status) || WEXITSTATUS(status) > kWalkedPart) {
            throw NamesError("the walk of the directories broke off");
        }
        isComplete_ = WEXITSTATUS(status) == kWalkedAll;
        return State::end;
    }
    return reader_.take(name) ? State::name : State::later;
}

/// Waits for the process, which has closed its output or was killed. Its status as of waitpid, or
/// -1 when somebody else has taken that.
int WalkedNames::reap() {
    const pid_t process = std::exchange(process_, -1);
    int status = -1;
    while (waitpid(process, &status, 0) == -1) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return status;
}

}  // namespace veltrace::cli
