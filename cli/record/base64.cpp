#include "record/base64.h"

#include <cstddef>
#include <cstdint>

namespace veltrace::cli {

std::string base64(std::string_view bytes) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
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

}  // namespace veltrace::cli
