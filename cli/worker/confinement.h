// All that a process does to itself before it opens files that nobody vouches for.
#pragma once

#include <cstdint>
#include <string>

#include "worker/limits.h"

namespace veltrace::cli {

/// What holds of a process that has confined itself.
struct Confinement {
    bool memoryLimit = false;
    bool noNewPrivileges = false;
    int landlockAbi = 0;   ///< version of the kernel's interface, 0: without
    bool seccomp = false;  ///< only the system calls that reading takes
    friend bool operator==(const Confinement&, const Confinement&) = default;
};

/// One line such as "memory limit, no new privileges, Landlock ABI 6, seccomp"; "none" for nothing.
[[nodiscard]] std::string describe(const Confinement& confinement);

/// Whether files and system calls are confined on top of limits and privileges.
enum class Sandbox : std::uint8_t { off, on };

/// Confines this process, for good, as far as the kernel goes along. It has one thread, has loaded
/// its libraries, and has opened what it writes to. Gives what holds from now on.
Confinement confine(const LimitOptions& limits, Sandbox sandbox);

/// What `confine` with its defaults would give, found out by a child that tries; nothing when no
/// child can be had. To be called while the process has one thread.
[[nodiscard]] Confinement availableConfinement();

}  // namespace veltrace::cli
