#include "sweep/block_budget.h"

#include <limits>

namespace veltrace::test {

namespace {

constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

thread_local std::size_t blocksLeft = kUnlimited;
thread_local bool refused = false;

}  // namespace

BlockBudget::BlockBudget(std::size_t blocks) {
    blocksLeft = blocks;
    refused = false;
}

BlockBudget::~BlockBudget() {
    blocksLeft = kUnlimited;
}

bool BlockBudget::exceeded() const {
    return refused;
}

}  // namespace veltrace::test

// The linker makes calls of qvMalloc calls of the second function, which it calls the first.
extern "C" void* __real_qvMalloc(std::size_t size);

extern "C" void* __wrap_qvMalloc(std::size_t size) {
    using namespace veltrace::test;
    if (blocksLeft == 0) {
        refused = true;
        return nullptr;
    }
    blocksLeft -= blocksLeft == kUnlimited ? 0 : 1;
    return __real_qvMalloc(size);
}
