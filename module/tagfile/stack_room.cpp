#include "tagfile/stack_room.h"

#include <algorithm>
#include <cstddef>
#include <pthread.h>
#include <sys/resource.h>

namespace veltrace::module {

namespace {

constexpr std::size_t kMaxReserve = std::size_t{256} * 1024;
// Assumed below the first caller if the system does not report the bounds.
constexpr std::size_t kFallbackRoom = std::size_t{128} * 1024;
// Assumed below the first caller without measuring; directories of photographs nest no deeper.
constexpr std::size_t kMinRoom = std::size_t{4} * 1024;

std::uintptr_t currentAddress() {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

/// The main thread's stack takes memory only as it grows, and may be unlimited. The process crashes
/// if no memory is left to grow into, so most of it is left to other uses.
std::size_t maxStackWithinMemory() {
    rlimit memory{RLIM_INFINITY, RLIM_INFINITY};
    static_cast<void>(getrlimit(RLIMIT_AS, &memory));
    return memory.rlim_cur / 4;
}

}  // namespace

void StackRoom::require() {
    const std::uintptr_t here = currentAddress();
    if (first_ == 0) {
        first_ = here;
    }
    if (here > first_ - kMinRoom) {
        return;
    }
    if (lowest_ == 0) {
        measure();
    }
    if (here < lowest_) {
        throw StackExhausted{};
    }
}

void StackRoom::measure() {
    lowest_ = first_ - kFallbackRoom;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return;
    }
    void* begin = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &begin, &size) == 0) {
        const auto lowestByte = reinterpret_cast<std::uintptr_t>(begin);
        // A host may run on a stack that it allocated itself, which the system does not report.
        if (currentAddress() >= lowestByte && currentAddress() - lowestByte < size) {
            const std::size_t usable = std::min(size, maxStackWithinMemory());
            lowest_ = lowestByte + (size - usable) + std::min(usable / 4, kMaxReserve);
        }
    }
    pthread_attr_destroy(&attributes);
}

}  // namespace veltrace::module
