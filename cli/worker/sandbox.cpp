#include "worker/sandbox.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace veltrace::cli {
namespace {

void append(std::string& list, std::string_view item) {
    list.append(list.empty() ? "" : ", ").append(item);
}

[[noreturn]] void enterSandboxAndReport(int pipe) {
    const Sandbox sandbox = enterSandbox({}, SandboxMode::on);
    const bool isReported = write(pipe, &sandbox, sizeof sandbox) == sizeof sandbox;
    _exit(isReported ? 0 : 1);
}

Sandbox readReport(int pipe) {
    Sandbox sandbox;
    ssize_t size = 0;
    do {
        size = read(pipe, &sandbox, sizeof sandbox);
    } while (size < 0 && errno == EINTR);
    return size == sizeof sandbox ? sandbox : Sandbox{};
}

void waitForEnd(pid_t child) {
    while (waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
    }
}

}  // namespace

std::string describe(const Sandbox& sandbox) {
    std::string list;
    if (sandbox.memoryLimit) {
        append(list, "memory limit");
    }
    if (sandbox.noNewPrivileges) {
        append(list, "no new privileges");
    }
    if (sandbox.landlockAbi > 0) {
        append(list, fmt::format("Landlock ABI {}", sandbox.landlockAbi));
    }
    if (sandbox.seccomp) {
        append(list, "seccomp");
    }
    return list.empty() ? "none" : list;
}

Sandbox enterSandbox(const LimitOptions& limits, SandboxMode mode) {
    Sandbox sandbox;
    sandbox.memoryLimit = limitResources(limits);
    sandbox.noNewPrivileges = forbidNewPrivileges();
    if (mode == SandboxMode::on) {
        sandbox.landlockAbi = restrictFiles();
        // Last: it would refuse the others.
        sandbox.seccomp = restrictSystemCalls();
    }
    return sandbox;
}

Sandbox availableSandbox() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const auto [readEnd, writeEnd] = ends;
    const pid_t child = fork();
    if (child == 0) {
        enterSandboxAndReport(writeEnd);
    }
    close(writeEnd);
    const Sandbox sandbox = child > 0 ? readReport(readEnd) : Sandbox{};
    close(readEnd);
    if (child > 0) {
        waitForEnd(child);
    }
    return sandbox;
}

}  // namespace veltrace::cli
