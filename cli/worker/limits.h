// What a process may use.
#pragma once

#include <cstdint>
#include <sys/types.h>

namespace veltrace::cli {

/// Address space that a file may take when nothing else is asked for: 1 GiB.
inline constexpr std::uint64_t kDefaultMemoryLimit = std::uint64_t{1} << 30;

struct LimitOptions {
    /// Address space in bytes that the process may take beyond what it has now; 0: no limit.
    std::uint64_t memoryBytes = kDefaultMemoryLimit;
    /// The process that started this one: this one ends by SIGKILL when the thread that started it
    /// ends, or now if it is gone already. 0: lives on.
    pid_t parent = 0;
};

/// Limits this process for the rest of its life: memory, no core dumps, nothing written to regular
/// files (such a write fails with EFBIG and raises no signal), few further descriptors. What the
/// system refuses to limit is left as it is. Gives whether a memory limit holds: never in a build
/// with AddressSanitizer, which reserves terabytes of address space.
bool limitResources(const LimitOptions& options);

/// Refuses, for this process and all that it starts: privileges of the programs that it executes,
/// dumps, and tracing by others of its user. Gives whether the privileges are refused.
bool renouncePrivileges();

}  // namespace veltrace::cli
