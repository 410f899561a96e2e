#include "process/child_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace veltrace::cli {
namespace {

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    void copy(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
    void openNull(int number) {
        posix_spawn_file_actions_addopen(&actions_, number, "/dev/null", O_RDWR, 0);
    }
    void closeFrom(int number) { posix_spawn_file_actions_addclosefrom_np(&actions_, number); }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// No signal is blocked or ignored, and the process group is a new one.
class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigset_t changed;
        sigemptyset(&none);
        sigemptyset(&changed);
        sigaddset(&changed, SIGPIPE);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &changed);
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }

    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command,
                           std::initializer_list<Handover> handovers, bool keepsError) {
    FileActions actions;
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (number != STDERR_FILENO || !keepsError) {
            actions.openNull(number);
        }
    }
    int highest = STDERR_FILENO;
    for (const auto& [from, to] : handovers) {
        actions.copy(from, to);
        highest = std::max(highest, to);
    }
    actions.closeFrom(highest + 1);
    const Attributes attributes;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const int reason = posix_spawn(&pid_, "/proc/self/exe", actions.get(), attributes.get(),
                                   arguments.data(), environ);
    if (reason != 0) {
        pid_ = -1;
        throw std::system_error(reason, std::generic_category(), "cannot start a process");
    }
}

bool ChildProcess::isStopped() const {
    siginfo_t info{};
    return pid_ >= 0 &&
           waitid(P_PID, static_cast<id_t>(pid_), &info, WSTOPPED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == pid_;
}

std::string ChildProcess::end() {
    if (pid_ < 0) {
        return "before";
    }
    kill(pid_, SIGKILL);
    const int status = wait();
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return fmt::format("by signal {} ({})", signal, strsignal(signal));
    }
    return fmt::format("with exit status {}", WEXITSTATUS(status));
}

int ChildProcess::wait() {
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    return status;
}

}  // namespace veltrace::cli
