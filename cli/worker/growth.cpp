#include "worker/growth.h"

#include <fcntl.h>
#include <malloc.h>

#include "worker/descriptors.h"

namespace veltrace::cli {

namespace {

std::size_t memoryInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

}  // namespace

Growth::Growth() : memoryInUse_(memoryInUse()), lowestFree_(lowestFreeDescriptor()) {}

bool Growth::hasGrown() const {
    return memoryInUse() > memoryInUse_ + kMostGrowth || fcntl(lowestFree_, F_GETFD) != -1;
}

}  // namespace veltrace::cli
