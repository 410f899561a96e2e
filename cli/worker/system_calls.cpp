#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <seccomp.h>
#include <span>
#include <sys/mman.h>
#include <type_traits>
#include <unistd.h>

#include "worker/limits.h"
#include "worker/sandbox.h"

namespace veltrace::cli {

namespace {

// A call that an architecture lacks has a number that its filter leaves out.
constexpr int kAllowed[] = {
    // Files that are open, and the state of any file.
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(pread64), SCMP_SYS(lseek), SCMP_SYS(_llseek),
    SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(close), SCMP_SYS(poll), SCMP_SYS(ppoll),
    SCMP_SYS(stat), SCMP_SYS(lstat), SCMP_SYS(fstat), SCMP_SYS(newfstatat), SCMP_SYS(statx),
    // Memory. The C library's sort calls `sysinfo`.
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(sysinfo),
    // Locks, time, random numbers of the allocator, and the stack of a thread, for which the C
    // library asks for its cores.
    SCMP_SYS(futex), SCMP_SYS(sched_yield), SCMP_SYS(sched_getaffinity), SCMP_SYS(getrlimit),
    SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(getrandom),
    // Exiting, also by a signal.
    SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(getpid), SCMP_SYS(gettid),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall)};

// The sanitizers test whether memory is readable by writing it into a pipe.
constexpr int kAllowedSanitizers[] = {SCMP_SYS(pipe), SCMP_SYS(pipe2)};

struct Conditional {
    int call;
    scmp_arg_cmp condition;
};

constexpr scmp_arg_cmp equals(unsigned argument, std::uint64_t value) {
    return {argument, SCMP_CMP_EQ, value, 0};
}

constexpr scmp_arg_cmp lacks(unsigned argument, std::uint64_t bits) {
    return {argument, SCMP_CMP_MASKED_EQ, bits, 0};
}

// Opening for reading with O_TRUNC would cut a file.
constexpr std::uint64_t kWriting = O_ACCMODE | O_CREAT | O_TRUNC;
static_assert(O_RDONLY == 0);

// Several conditions of one call are alternatives.
constexpr Conditional kAllowedIf[] = {
    {SCMP_SYS(open), lacks(1, kWriting)},
    {SCMP_SYS(openat), lacks(2, kWriting)},
    {SCMP_SYS(mmap), lacks(2, PROT_EXEC)},
    {SCMP_SYS(mprotect), lacks(2, PROT_EXEC)},
    {SCMP_SYS(fcntl), equals(1, F_DUPFD_CLOEXEC)},
    {SCMP_SYS(fcntl), equals(1, F_GETFD)},
    {SCMP_SYS(fcntl), equals(1, F_GETFL)},
    {SCMP_SYS(prlimit64), equals(2, 0)},  // reads limits, sets none
};

bool allow(scmp_filter_ctx filter, const Conditional& rule) {
    return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, rule.call, 1, &rule.condition) == 0;
}

bool allowAlways(scmp_filter_ctx filter, std::span<const int> calls) {
    return std::ranges::all_of(calls, [filter](int call) {
        return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call, 0, nullptr) == 0;
    });
}

bool allowAll(scmp_filter_ctx filter) {
    return allowAlways(filter, kAllowed) &&
           (!kHasAddressSanitizer || allowAlways(filter, kAllowedSanitizers)) &&
           std::ranges::all_of(kAllowedIf,
                               [filter](const Conditional& rule) { return allow(filter, rule); }) &&
           // Signals to this very process are how abort() and raise() end it.
           allow(filter, {SCMP_SYS(tgkill), equals(0, static_cast<std::uint64_t>(getpid()))});
}

struct ReleaseFilter {
    void operator()(scmp_filter_ctx filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, ReleaseFilter>;

}  // namespace

bool restrictSystemCalls() {
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    return filter != nullptr && allowAll(filter.get()) && seccomp_load(filter.get()) == 0;
}

}  // namespace veltrace::cli
