#include "worker/resource_watch.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace veltrace::cli {
namespace {

std::size_t memoryInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// The handler is a plain function, so it finds the watch here.
std::atomic<bool>* noted = nullptr;

[[noreturn]] void noteAndThrow() {
    *noted = true;
    throw std::bad_alloc();
}

}  // namespace

int lowestFreeDescriptor() {
    // A copy gets the lowest number, and opens no file.
    const int copy = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    if (copy >= 0) {
        close(copy);
    }
    return copy;
}

void keepFreedMemory() {
    mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the most that it accepts
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
    mallopt(M_MXFAST, 0);
}

Growth::Growth() : memoryInUse_(memoryInUse()), lowestFree_(lowestFreeDescriptor()) {}

bool Growth::hasGrown() const {
    return memoryInUse() > memoryInUse_ + kMaxGrowth || fcntl(lowestFree_, F_GETFD) != -1;
}

MemoryWatch::MemoryWatch() {
    noted = &ranOut_;
    previous_ = std::set_new_handler(noteAndThrow);
}

MemoryWatch::~MemoryWatch() {
    std::set_new_handler(previous_);
}

}  // namespace veltrace::cli
