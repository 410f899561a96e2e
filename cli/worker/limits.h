// What a process may use.
#pragma once

#include <cstdint>
#include <sys/types.h>

namespace veltrace::cli {

/// Whether this is a build with AddressSanitizer.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kHasAddressSanitizer = true;
#elif defined(__has_feature)
inline constexpr bool kHasAddressSanitizer = __has_feature(address_sanitizer);
#else
inline constexpr bool kHasAddressSanitizer = false;
#endif

/// Address space that a file may take when nothing else is asked for: 1 GiB.
inline constexpr std::uint64_t kDefaultMemoryLimit = std::uint64_t{1} << 30;

struct LimitOptions {
    /// Address space in bytes that the process may take beyond what it has now; 0: no limit.
    std::uint64_t memoryBytes = kDefaultMemoryLimit;
    /// The process that started this one: this one ends by SIGKILL when the thread that started it
    /// ends, or now if it is gone already. 0: it outlives its parent.
    pid_t parent = 0;
};

/// Limits this process for the rest of its life: memory, no core dumps, nothing written to regular
/// files (such a write fails with EFBIG and raises no signal), few further descriptors. What the
/// system refuses to limit stays as it is. Returns whether a memory limit is set: never in a build
/// with AddressSanitizer, which reserves terabytes of address space.
bool limitResources(const LimitOptions& options);

/// Refuses, for this process and all that it starts: privileges of the programs that it executes,
/// dumps, and tracing by others of its user. Returns whether the privileges are refused.
bool forbidNewPrivileges();

}  // namespace veltrace::cli
