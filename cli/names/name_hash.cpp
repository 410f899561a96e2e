#include "names/name_hash.h"

// The whole library in this file: nothing to link.
#define XXH_INLINE_ALL
#include <xxhash.h>

namespace veltrace::cli {

std::uint64_t shortHashOf(std::string_view name) {
    return XXH3_64bits(name.data(), name.size());
}

NameHash hashOf(std::string_view name) {
    const XXH128_hash_t hash = XXH3_128bits(name.data(), name.size());
    return {hash.high64, hash.low64};
}

}  // namespace veltrace::cli
