// The mutator that libFuzzer calls instead of its own.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "mutation/tiff_mutation.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    using namespace veltrace::fuzz;
    Random random(seed);
    const Bytes before(data, data + size);
    const Bytes after = random.oneIn(3) ? before : mutated(before, maxSize, random);
    if (after == before || after.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::ranges::copy(after, data);
    return after.size();
}
