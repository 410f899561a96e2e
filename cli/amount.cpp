#include "amount.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace veltrace::cli {
namespace {

constexpr unsigned kBitsPerUnit = 10;

/// By how many bits the unit at the end of `text` shifts; 0 without one.
unsigned shiftOf(std::string_view text) {
    constexpr std::string_view kUnits = "KMGTkmgt";
    constexpr std::size_t kDifferent = kUnits.size() / 2;
    const std::size_t unit = text.empty() ? std::string_view::npos : kUnits.find(text.back());
    return unit == std::string_view::npos
               ? 0
               : kBitsPerUnit * (static_cast<unsigned>(unit % kDifferent) + 1);
}

}  // namespace

std::optional<std::uint64_t> parseCount(std::string_view text) {
    std::uint64_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return count;
}

std::optional<std::uint64_t> parseSize(std::string_view text) {
    const unsigned shift = shiftOf(text);
    if (shift > 0) {
        text.remove_suffix(1);
    }
    const auto count = parseCount(text);
    if (!count || *count > std::numeric_limits<std::uint64_t>::max() >> shift) {
        return std::nullopt;
    }
    return *count << shift;
}

}  // namespace veltrace::cli
