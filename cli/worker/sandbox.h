// The sandbox that a process enters before it opens untrusted files.
#pragma once

#include <cstdint>
#include <string>

#include "worker/limits.h"

namespace veltrace::cli {

/// What restricts a process from now on.
struct Sandbox {
    bool memoryLimit = false;
    bool noNewPrivileges = false;
    int landlockAbi = 0;   ///< version of the kernel's interface, 0: without
    bool seccomp = false;  ///< only the system calls that reading needs
    friend bool operator==(const Sandbox&, const Sandbox&) = default;
};

/// One line such as "memory limit, no new privileges, Landlock ABI 6, seccomp"; "none" for nothing.
[[nodiscard]] std::string describe(const Sandbox& sandbox);

/// Whether files and system calls are restricted, besides resources and privileges.
enum class SandboxMode : std::uint8_t { off, on };

/// Restricts this process for the rest of its life, as far as the kernel supports it. It has one
/// thread, has loaded its libraries, and has opened what it writes to. Returns what was restricted.
Sandbox enterSandbox(const LimitOptions& limits, SandboxMode mode);

/// What `enterSandbox` would return with its defaults, found out by a child process; nothing when
/// no child can be started. To be called while the process has one thread.
[[nodiscard]] Sandbox availableSandbox();

/// From now on this thread, and those that it starts, may read files and directories and do nothing
/// else to them: no writing, truncating, creating, removing or executing. Where the kernel can, TCP
/// connections, abstract sockets and signals to other processes are refused as well. Open
/// descriptors stay as they are. Needs `forbidNewPrivileges`. Returns the version of the kernel's
/// Landlock interface that is used; 0 when it has none or refuses.
int restrictFiles();

/// From now on this thread may only make the system calls that reading files needs: open files for
/// reading, read and write what is open, get memory that holds no code, get the time, and end
/// itself, also by a signal. Every other call fails with EPERM: no writing to further files, no
/// programs, processes, threads or sockets, no signals to others, no libraries loaded. Needs
/// `forbidNewPrivileges`. Returns whether the kernel accepted the filter.
bool restrictSystemCalls();

}  // namespace veltrace::cli
