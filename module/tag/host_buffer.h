// Host memory with an owner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zephra/qv.h"

namespace veltrace::module {

struct HostFree {
    void operator()(std::byte* block) const { qvFree(block); }
};

using HostBuffer = std::unique_ptr<std::byte[], HostFree>;

/// Null when the host is out of memory.
[[nodiscard]] inline HostBuffer allocateHostBuffer(std::uint32_t size) {
    return HostBuffer(static_cast<std::byte*>(qvMalloc(size)));
}

}  // namespace veltrace::module
