#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "worker/sandbox.h"

namespace veltrace::cli {

namespace {

// The newest version with something new to refuse.
constexpr int kNewestAbi = 6;

/// The layout of the newest version; older ones know only its beginning. The system's header may be
/// older than the kernel, so the layout and the constants are stated here.
struct Refusals {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

constexpr std::uint64_t kFilesOfFirstAbi = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
constexpr std::uint64_t kRefer = std::uint64_t{1} << 13;
constexpr std::uint64_t kTruncate = std::uint64_t{1} << 14;
constexpr std::uint64_t kControlDevices = std::uint64_t{1} << 15;
constexpr std::uint64_t kBindAndConnectTcp = 3;
constexpr std::uint64_t kAbstractSocketsAndSignals = 3;

Refusals refusalsOf(int abi) {
    Refusals refusals{.files = kFilesOfFirstAbi};
    refusals.files |= abi >= 2 ? kRefer : 0;
    refusals.files |= abi >= 3 ? kTruncate : 0;
    refusals.network = abi >= 4 ? kBindAndConnectTcp : 0;
    refusals.files |= abi >= 5 ? kControlDevices : 0;
    refusals.scopes = abi >= 6 ? kAbstractSocketsAndSignals : 0;
    return refusals;
}

std::size_t sizeOf(int abi) {
    if (abi >= 6) {
        return sizeof(Refusals);
    }
    return abi >= 4 ? offsetof(Refusals, scopes) : offsetof(Refusals, network);
}

// The C library has no functions for these.
int availableAbi() {
    return static_cast<int>(
        syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

/// Allows reading below the root. Returns whether the kernel accepted it.
bool allowReading(int ruleset) {
    const int root = open("/", O_PATH | O_CLOEXEC);
    if (root < 0) {
        return false;
    }
    const landlock_path_beneath_attr rule{
        .allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR,
        .parent_fd = root};
    const long status =
        syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    close(root);
    return status == 0;
}

}  // namespace

int restrictFiles() {
    const int abi = std::min(availableAbi(), kNewestAbi);
    if (abi <= 0) {
        return 0;
    }
    const Refusals refusals = refusalsOf(abi);
    const int ruleset =
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &refusals, sizeOf(abi), 0));
    if (ruleset < 0) {
        return 0;
    }
    const bool isRestricted =
        allowReading(ruleset) && syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    close(ruleset);
    return isRestricted ? abi : 0;
}

}  // namespace veltrace::cli
