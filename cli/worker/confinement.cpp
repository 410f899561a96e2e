#include "worker/confinement.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

#include "worker/landlock.h"
#include "worker/system_calls.h"

namespace veltrace::cli {

namespace {

void append(std::string& list, std::string_view item) {
    list.append(list.empty() ? "" : ", ").append(item);
}

[[noreturn]] void confineAndTell(int pipe) {
    const Confinement holds = confine({}, Sandbox::on);
    const bool told = write(pipe, &holds, sizeof holds) == sizeof holds;
    _exit(told ? 0 : 1);
}

Confinement hear(int pipe) {
    Confinement holds;
    ssize_t size = 0;
    do {
        size = read(pipe, &holds, sizeof holds);
    } while (size < 0 && errno == EINTR);
    return size == sizeof holds ? holds : Confinement{};
}

void waitFor(pid_t child) {
    while (waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
    }
}

}  // namespace

std::string describe(const Confinement& confinement) {
    std::string list;
    if (confinement.memoryLimit) {
        append(list, "memory limit");
    }
    if (confinement.noNewPrivileges) {
        append(list, "no new privileges");
    }
    if (confinement.landlockAbi > 0) {
        append(list, fmt::format("Landlock ABI {}", confinement.landlockAbi));
    }
    if (confinement.seccomp) {
        append(list, "seccomp");
    }
    return list.empty() ? "none" : list;
}

Confinement confine(const LimitOptions& limits, Sandbox sandbox) {
    Confinement holds;
    holds.memoryLimit = limitResources(limits);
    holds.noNewPrivileges = renouncePrivileges();
    if (sandbox == Sandbox::on) {
        holds.landlockAbi = confineFileSystem();
        // Last: it would refuse the others.
        holds.seccomp = confineSystemCalls();
    }
    return holds;
}

Confinement availableConfinement() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const auto [readEnd, writeEnd] = ends;
    const pid_t child = fork();
    if (child == 0) {
        confineAndTell(writeEnd);
    }
    close(writeEnd);
    const Confinement holds = child > 0 ? hear(readEnd) : Confinement{};
    close(readEnd);
    if (child > 0) {
        waitFor(child);
    }
    return holds;
}

}  // namespace veltrace::cli
