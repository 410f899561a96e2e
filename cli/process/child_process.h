// Another process of this command.
#pragma once

#include <initializer_list>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace veltrace::cli {

/// This command, started once more. Killed and waited for on destruction.
class ChildProcess {
public:
    /// A descriptor of this process and its number in the child.
    using Handover = std::pair<int, int>;

    /// Starts it with the arguments `command`, which include its name, in its own process group:
    /// keys that interrupt or stop this process do not reach it. It gets the descriptors of
    /// `handovers`, whose numbers have no gap above the standard three, /dev/null for the others of
    /// these three, and no inherited ones. With `keepsError` it keeps standard error. Throws
    /// std::system_error.
    ChildProcess(std::vector<std::string> command, std::initializer_list<Handover> handovers,
                 bool keepsError);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { static_cast<void>(end()); }

    /// Whether a signal has stopped it, without ending it.
    [[nodiscard]] bool isStopped() const;

    /// Kills the process unless it has ended already; returns how it ended: "by signal 11
    /// (Segmentation fault)" or "with exit status 0"; "by signal 9 (Killed)" if this killed it.
    std::string end();

    /// Waits until it ends by itself; returns its status as waitpid does.
    int wait();

    /// -1 once it has been waited for.
    [[nodiscard]] pid_t id() const { return pid_; }

private:
    pid_t pid_ = -1;
};

}  // namespace veltrace::cli
