#include "render/escape.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <optional>
#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace veltrace::cli {
namespace {

/// One character, or one byte that is part of none.
struct Piece {
    std::string_view bytes;
    std::optional<unsigned> codePoint;
};

constexpr bool isPrintableAscii(char c) {
    return c >= ' ' && c <= '~';
}

/// `bytes` must not be empty.
Piece firstPiece(std::string_view bytes) {
    if (isPrintableAscii(bytes.front())) {
        return {bytes.substr(0, 1), static_cast<unsigned>(bytes.front())};
    }
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    unsigned codePoint = 0;
    if (rapidjson::UTF8<>::Decode(stream, &codePoint)) {
        return {bytes.substr(0, stream.Tell()), codePoint};
    }
    return {bytes.substr(0, 1), std::nullopt};
}

struct CodeRange {
    unsigned first;
    unsigned last;
};

// The last three: a change of direction could make a text look like another one.
constexpr CodeRange kControls[] = {
    {0x00, 0x1f},     {0x7f, 0x9f},     {0x061c, 0x061c}, {0x200e, 0x200f},
    {0x2028, 0x2029}, {0x202a, 0x202e}, {0x2066, 0x2069},
};

bool isControl(unsigned code) {
    return std::ranges::any_of(kControls, [code](const CodeRange& range) {
        return range.first <= code && code <= range.last;
    });
}

bool isPrintable(const Piece& piece) {
    return piece.codePoint && !isControl(*piece.codePoint);
}

void appendVisible(std::string& text, const Piece& piece) {
    if (piece.bytes == "\\") {
        text += R"(\\)";
    } else if (isPrintable(piece)) {
        text += piece.bytes;
    } else if (piece.bytes == "\n") {
        text += R"(\n)";
    } else if (piece.bytes == "\r") {
        text += R"(\r)";
    } else if (piece.bytes == "\t") {
        text += R"(\t)";
    } else {
        for (const char c : piece.bytes) {
            fmt::format_to(std::back_inserter(text), "\\x{:02x}", static_cast<unsigned char>(c));
        }
    }
}

}  // namespace

std::string visible(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Piece piece = firstPiece(bytes);
        appendVisible(text, piece);
        bytes.remove_prefix(piece.bytes.size());
    }
    return text;
}

bool isPrintable(std::string_view bytes) {
    while (!bytes.empty()) {
        const Piece piece = firstPiece(bytes);
        if (!isPrintable(piece)) {
            return false;
        }
        bytes.remove_prefix(piece.bytes.size());
    }
    return true;
}

std::string_view firstBytes(std::string_view bytes, std::size_t limit) {
    if (bytes.size() <= limit) {
        return bytes;
    }
    std::size_t end = 0;
    while (true) {
        const std::size_t next = end + firstPiece(bytes.substr(end)).bytes.size();
        if (next > limit) {
            return bytes.substr(0, end);
        }
        end = next;
    }
}

std::string withoutFinalNuls(std::string text) {
    while (text.ends_with('\0')) {
        text.pop_back();
    }
    return text;
}

}  // namespace veltrace::cli
