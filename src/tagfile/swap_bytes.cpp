#include "tagfile/swap_bytes.h"

#include <algorithm>

namespace veltrace {

void swapBytes(void* buffer, int elementSize, unsigned count, bool swap) {
    if (!swap || count == 0) {
        return;
    }
    auto* element = static_cast<std::byte*>(buffer);
    for (unsigned i = 0; i < count; ++i, element += elementSize) {
        std::reverse(element, element + elementSize);
    }
}

}  // namespace veltrace
