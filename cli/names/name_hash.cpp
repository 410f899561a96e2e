#include "names/name_hash.h"

#include <limits>

// The whole library in this file: nothing to link.
#define XXH_INLINE_ALL
#include <xxhash.h>

#include "amount.h"

namespace veltrace::cli {

NameHash hashOf(std::string_view name) {
    const XXH128_hash_t hash = XXH3_128bits(name.data(), name.size());
    return {hash.high64, hash.low64};
}

std::uint64_t shortHashOf(std::string_view name) {
    return XXH3_64bits(name.data(), name.size());
}

bool Shard::contains(std::string_view name) const {
    return shortHashOf(name) % count + 1 == index;
}

std::optional<Shard> parseShard(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto index = parseCount(text.substr(0, slash));
    const auto count = parseCount(text.substr(slash + 1));
    if (!index || !count || *index < 1 || *index > *count ||
        *count > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return Shard{static_cast<std::uint32_t>(*index), static_cast<std::uint32_t>(*count)};
}

}  // namespace veltrace::cli
