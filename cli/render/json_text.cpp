#include "render/json_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

using namespace std::string_view_literals;

namespace veltrace::cli {
namespace {

unsigned char byteAt(std::string_view bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

/// The length of the ASCII start of `bytes`, in whole blocks of eight.
std::size_t asciiStart(std::string_view bytes) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::size_t end = 0;
    for (std::uint64_t block = 0; end + sizeof(block) <= bytes.size(); end += sizeof(block)) {
        std::memcpy(&block, bytes.data() + end, sizeof(block));
        if ((block & kHighBits) != 0) {
            break;
        }
    }
    return end;
}

enum class Kind : std::uint8_t {
    plain,
    escaped,
    leadC2,  // of U+0080 to U+00BF, the first half of which are controls
    leadE2   // of U+2000 to U+2FFF, with the two line separators
};

constexpr std::array<Kind, 256> kKinds = [] {
    std::array<Kind, 256> kinds{};
    for (std::size_t code = 0; code < 0x20; ++code) {
        kinds[code] = Kind::escaped;
    }
    kinds['"'] = kinds['\\'] = kinds[0x7F] = Kind::escaped;
    kinds[0xC2] = Kind::leadC2;
    kinds[0xE2] = Kind::leadE2;
    return kinds;
}();

/// Whether `bytes` are ASCII without anything to escape, as nearly all texts are.
bool isPlainAscii(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x80 && kKinds[code] == Kind::plain;
    });
}

/// The size of the character at `i` if it must be escaped, else 0. Reads beyond a lead byte, as
/// UTF-8 is never cut.
std::size_t escapedBytes(std::string_view utf8, std::size_t i) {
    switch (kKinds[byteAt(utf8, i)]) {
        case Kind::plain:
            return 0;
        case Kind::escaped:
            return 1;
        case Kind::leadC2:
            return byteAt(utf8, i + 1) <= 0x9F ? 2 : 0;
        case Kind::leadE2:
            return byteAt(utf8, i + 1) == 0x80 && (byteAt(utf8, i + 2) & 0xFE) == 0xA8 ? 3 : 0;
    }
    return 0;
}

unsigned codeOf(std::string_view character) {
    switch (character.size()) {
        case 1:
            return byteAt(character, 0);
        case 2:
            return byteAt(character, 1);  // of C2 80 to C2 9F
        default:
            return 0x2000U | (byteAt(character, 2) & 0x3FU);  // of E2 80 A8 and E2 80 A9
    }
}

void appendEscape(BoundedText& out, unsigned code) {
    constexpr std::string_view kShortCodes = "\"\\\b\f\n\r\t";
    constexpr std::string_view kShortNames = "\"\\bfnrt";
    const std::size_t index =
        code < 0x80 ? kShortCodes.find(static_cast<char>(code)) : std::string_view::npos;
    if (index != std::string_view::npos) {
        const std::array<char, 2> escape{'\\', kShortNames[index]};
        out.append({escape.data(), escape.size()});
        return;
    }
    std::array<char, 6> escape{};
    fmt::format_to(escape.data(), FMT_COMPILE("\\u{:04x}"), code);
    out.append({escape.data(), escape.size()});
}

void appendUtf8(BoundedText& out, std::string_view utf8) {
    std::size_t written = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        const std::size_t length = escapedBytes(utf8, i);
        if (length == 0) {
            ++i;
            continue;
        }
        out.append(utf8.substr(written, i - written));
        appendEscape(out, codeOf(utf8.substr(i, length)));
        i += length;
        written = i;
    }
    out.append(utf8.substr(written));
}

std::string latin1(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned char byte = byteAt(bytes, i);
        if (byte < 0x80) {
            text += static_cast<char>(byte);
        } else {
            text += static_cast<char>(0xC0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

bool isWholeBelow2To53(double number) {
    return std::abs(number) < 0x1p53 &&
           number == static_cast<double>(static_cast<std::int64_t>(number));
}

constexpr std::size_t kMaxNumberSize = 24;  // -2.2250738585072014e-308

/// Writes `number` and returns the end of its text.
char* writeNumber(char* text, double number) {
    if (number == 0 && std::signbit(number)) {
        return std::ranges::copy("-0.0"sv, text).out;
    }
    if (isWholeBelow2To53(number)) {
        return std::to_chars(text, text + kMaxNumberSize, static_cast<std::int64_t>(number)).ptr;
    }
    return fmt::format_to(text, FMT_COMPILE("{}"), number);
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    while (true) {
        bytes.remove_prefix(asciiStart(bytes));
        if (bytes.empty()) {
            return true;
        }
        rapidjson::MemoryStream stream(bytes.data(), bytes.size());
        for (std::size_t i = 0; i < sizeof(std::uint64_t) && stream.Tell() < bytes.size(); ++i) {
            unsigned code = 0;
            if (!rapidjson::UTF8<>::Decode(stream, &code)) {
                return false;
            }
        }
        bytes.remove_prefix(stream.Tell());
    }
}

std::string asCharacters(std::string_view bytes) {
    return isUtf8(bytes) ? std::string(bytes) : latin1(bytes);
}

bool appendText(BoundedText& out, std::string_view bytes) {
    const bool isPlain = isPlainAscii(bytes);
    const bool isValid = isPlain || isUtf8(bytes);
    out.append('"');
    if (isPlain) {
        out.append(bytes);
    } else if (isValid) {
        appendUtf8(out, bytes);
    } else {
        appendUtf8(out, latin1(bytes));
    }
    out.append('"');
    return isValid;
}

void appendNumber(BoundedText& out, double number) {
    appendNumbers(out, {&number, 1});
}

void appendNumbers(BoundedText& out, std::span<const double> numbers) {
    std::array<char, 1024> text;  // NOLINT(cppcoreguidelines-pro-type-member-init): written first
    char* end = text.data();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (text.data() + text.size() - end < std::ptrdiff_t{1 + kMaxNumberSize}) {
            out.append({text.data(), end});
            end = text.data();
        }
        if (i > 0) {
            *end++ = ',';
        }
        end = writeNumber(end, numbers[i]);
    }
    out.append({text.data(), end});
}

}  // namespace veltrace::cli
