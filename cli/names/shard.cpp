#include "names/shard.h"

#include <limits>

#include "amount.h"
#include "names/name_hash.h"

namespace veltrace::cli {

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
