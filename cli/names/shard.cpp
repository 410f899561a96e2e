#include "names/shard.h"

#include <charconv>

#include "names/name_hash.h"

namespace veltrace::cli {
namespace {

std::optional<std::uint32_t> parseNumber(std::string_view text) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

bool Shard::contains(std::string_view name) const {
    return shortHashOf(name) % count + 1 == index;
}

std::optional<Shard> parseShard(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto index = parseNumber(text.substr(0, slash));
    const auto count = parseNumber(text.substr(slash + 1));
    if (!index || !count || *index < 1 || *index > *count) {
        return std::nullopt;
    }
    return Shard{*index, *count};
}

}  // namespace veltrace::cli
