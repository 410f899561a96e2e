#include "run/interruption.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace veltrace::cli {
namespace {

// Signal handlers can reach globals only.
std::atomic<int> interruptingSignal{0};
std::atomic<bool> childChanged{false};
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void handleSignal(int signal) {
    const int keptErrno = errno;
    if (signal == SIGCHLD) {
        childChanged = true;
    } else {
        interruptingSignal = signal;
    }
    const std::uint64_t one = 1;
    // A full counter is readable as well.
    static_cast<void>(write(wakeUp, &one, sizeof one) > 0);
    errno = keptErrno;
}

void handle(int signal, int flags) {
    struct sigaction action {};
    action.sa_handler = handleSignal;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

void catchInterruptions() {
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal)) {
            // Without SA_RESTART, so that a write that waits for a reader fails.
            handle(signal, static_cast<int>(SA_RESETHAND));
        }
    }
    // Also if it is ignored: the system would then forget children at once, and this process might
    // send signals to other processes with their ids.
    handle(SIGCHLD, SA_RESTART);
}

int interruption() {
    return interruptingSignal;
}

bool takeChildChange() {
    return childChanged.exchange(false);
}

int wakeUpDescriptor() {
    return wakeUp;
}

void forgetWakeUp() {
    std::uint64_t count = 0;
    static_cast<void>(read(wakeUp, &count, sizeof count) > 0);
}

}  // namespace veltrace::cli
