#include "tagfile/stack_room.h"

#include <algorithm>
#include <cstddef>
#include <pthread.h>
#include <sys/resource.h>

namespace veltrace::module {

namespace {

constexpr std::size_t kMostKeptBack = std::size_t{256} * 1024;
// Assumed below the first caller when the system does not tell the limits.
constexpr std::size_t kRoomWhenUnknown = std::size_t{128} * 1024;
// Taken to be there below the first caller; the directories of a photograph nest no deeper.
constexpr std::size_t kRoomOfAnyStack = std::size_t{4} * 1024;

std::uintptr_t currentAddress() {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

/// The stack of the first thread takes memory only as it grows, and may have no limit of its own.
/// Where there is no memory left to grow into, the process ends, so most is left to other uses.
std::size_t mostThatMemoryAllows() {
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
    if (here > first_ - kRoomOfAnyStack) {
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
    lowest_ = first_ - kRoomWhenUnknown;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return;
    }
    void* begin = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &begin, &size) == 0) {
        const auto lowestByte = reinterpret_cast<std::uintptr_t>(begin);
        // A host may run on a stack of its own making, of which the system knows nothing.
        if (currentAddress() >= lowestByte && currentAddress() - lowestByte < size) {
            const std::size_t usable = std::min(size, mostThatMemoryAllows());
            lowest_ = lowestByte + (size - usable) + std::min(usable / 4, kMostKeptBack);
        }
    }
    pthread_attr_destroy(&attributes);
}

}  // namespace veltrace::module
