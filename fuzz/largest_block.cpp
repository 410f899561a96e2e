#include "largest_block.h"

#include <algorithm>

#include "finding.h"

using AllocationHook = void (*)(const volatile void* block, std::size_t size);
using ReleaseHook = void (*)(const volatile void* block);

// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name
extern "C" __attribute__((weak)) int __sanitizer_install_malloc_and_free_hooks(
    AllocationHook onAllocation, ReleaseHook onRelease);

namespace veltrace::fuzz {
namespace {

thread_local std::size_t largest = 0;

void noteBlock(const volatile void* /*block*/, std::size_t size) {
    largest = std::max(largest, size);
}

void ignoreRelease(const volatile void* /*block*/) {}

bool installHooks() {
    if (__sanitizer_install_malloc_and_free_hooks != nullptr) {
        require(__sanitizer_install_malloc_and_free_hooks(&noteBlock, &ignoreRelease) != 0,
                "the sanitizer has no place for another hook");
    }
    return true;
}

}  // namespace

void watchBlocks() {
    static const bool isInstalled = installHooks();
    largest = isInstalled ? 0 : largest;
}

std::size_t largestBlock() {
    return largest;
}

}  // namespace veltrace::fuzz
