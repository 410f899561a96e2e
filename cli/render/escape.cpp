#include "render/escape.h"

#include <fmt/format.h>
#include <iterator>
#include <optional>
#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace veltrace::cli {
namespace {

/// One character, or one byte that belongs to none.
struct Piece {
    std::string_view bytes;
    std::optional<unsigned> codePoint;
};

/// `bytes` must not be empty.
Piece firstPiece(std::string_view bytes) {
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    unsigned codePoint = 0;
    if (rapidjson::UTF8<>::Decode(stream, &codePoint)) {
        return {bytes.substr(0, stream.Tell()), codePoint};
    }
    return {bytes.substr(0, 1), std::nullopt};
}

bool isPrintable(const Piece& piece) {
    const auto code = piece.codePoint;
    return code && *code >= 0x20 && (*code < 0x7f || *code > 0x9f);
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

std::string asUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Piece piece = firstPiece(bytes);
        if (piece.codePoint) {
            text += piece.bytes;
        } else {
            const auto byte = static_cast<unsigned char>(bytes.front());
            text += static_cast<char>(0xC0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
        bytes.remove_prefix(piece.bytes.size());
    }
    return text;
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

}  // namespace veltrace::cli
