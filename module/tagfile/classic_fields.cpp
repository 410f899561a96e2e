#include "tagfile/classic_fields.h"

#include "tagfile/tag_file.h"

namespace veltrace::module {

std::size_t readClassicCount(TagFile& file, std::uint64_t* count) {
    constexpr std::uint64_t kHighHalf = 0xFFFF'FFFF'0000'0000;
    std::uint16_t number = 0;
    if (!file.readNumber(&number)) {
        return 0;
    }
    *count = (*count & kHighHalf) | number;
    return 1;
}

std::size_t readClassicOffset(TagFile& file, std::uint64_t* offset) {
    std::uint32_t number = 0;
    if (!file.readNumber(&number)) {
        return 0;
    }
    *offset = number;
    return 1;
}

}  // namespace veltrace::module
