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

    /// Starts it with the arguments `command`, its name among them, in a process group of its own:
    /// keys that interrupt or stop this process do not reach it. It gets the descriptors of
    /// `handovers`, whose numbers have no gap above the standard three, /dev/null for those of the
    /// three that are not among them, and no others, even if this process inherited them. Standard
    /// error stays with `keepsError`. Throws std::system_error.
    ChildProcess(std::vector<std::string> command, std::initializer_list<Handover> handovers,
                 bool keepsError);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { static_cast<void>(end()); }

    /// Whether a signal has stopped it, without ending it.
    [[nodiscard]] bool isStopped() const;

    /// Kills the process unless it is dead already; tells how it ended: "by signal 11
    /// (Segmentation fault)" or "with exit status 0". Of a process that this kills: by signal 9.
    std::string end();

    /// Waits until it ends by itself; gives its status as waitpid tells it.
    int wait();

    /// -1 once it has been waited for.
    [[nodiscard]] pid_t id() const { return pid_; }

private:
    pid_t pid_ = -1;
};

}  // namespace veltrace::cli
