#include "worker/limits.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <optional>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "worker/resource_watch.h"

namespace veltrace::cli {

namespace {

// A file needs three at a time; a read that fails unexpectedly keeps its one.
constexpr rlim_t kFurtherDescriptors = 16;

/// Soft and hard limit alike, so that they cannot be raised again. Never raises one.
bool lower(decltype(RLIMIT_AS) resource, rlim_t value) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0) {
        return false;
    }
    const rlim_t lowered = std::min(value, limit.rlim_max);
    limit = {lowered, lowered};
    return setrlimit(resource, &limit) == 0;
}

std::optional<rlim_t> addressSpace() {
    std::ifstream statm("/proc/self/statm");
    rlim_t pages = 0;
    if (!(statm >> pages)) {
        return std::nullopt;
    }
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

/// The system counts the program and its libraries too, so they are added to what a file may take.
bool limitMemory(std::uint64_t bytes) {
    if (bytes == 0 || kHasAddressSanitizer) {
        return false;
    }
    const std::optional<rlim_t> taken = addressSpace();
    return taken && lower(RLIMIT_AS, *taken + std::min<rlim_t>(bytes, RLIM_INFINITY - *taken));
}

void limitDescriptors() {
    if (const int lowestFree = lowestFreeDescriptor(); lowestFree >= 0) {
        lower(RLIMIT_NOFILE, static_cast<rlim_t>(lowestFree) + kFurtherDescriptors);
    }
}

void endWith(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // It may have ended before that call.
    if (getppid() != parent) {
        static_cast<void>(std::raise(SIGKILL));
    }
}

}  // namespace

bool limitResources(const LimitOptions& options) {
    if (options.parent != 0) {
        endWith(options.parent);
    }
    lower(RLIMIT_CORE, 0);
    // Standard error may be a file: a message is then lost, but not the process.
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    lower(RLIMIT_FSIZE, 0);
    limitDescriptors();
    return limitMemory(options.memoryBytes);
}

bool forbidNewPrivileges() {
    // A limit of 0 does not stop dumps that the system pipes to a program; this does.
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

}  // namespace veltrace::cli
