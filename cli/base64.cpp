#include "base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace veltrace::cli {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Appends the bytes of two to four digits: one less than there are digits.
bool appendGroup(std::string_view digits, std::string& bytes) {
    std::uint32_t bits = 0;
    for (const char digit : digits) {
        const std::size_t value = kDigits.find(digit);
        if (value == std::string_view::npos) {
            return false;
        }
        bits = bits << 6 | static_cast<std::uint32_t>(value);
    }
    bits <<= 6 * (4 - digits.size());
    for (std::size_t i = 1; i < digits.size(); ++i) {
        bytes += static_cast<char>(bits >> 16);
        bits = bits << 8 & 0xFFFFFF;
    }
    return bits == 0;
}

}  // namespace

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t start = 0; start < bytes.size(); start += 3) {
        const std::string_view group = bytes.substr(start, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const char byte = i < group.size() ? group[i] : '\0';
            bits = bits << 8 | static_cast<unsigned char>(byte);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= group.size() ? kDigits[bits >> (18 - 6 * i) & 0x3F] : '=';
        }
    }
    return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) {
        text.remove_suffix(1);
    }
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(4, text.size()))) {
        if (!appendGroup(text.substr(0, 4), bytes)) {
            return std::nullopt;
        }
    }
    return bytes;
}

}  // namespace veltrace::cli
