#include "render/json_check.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <rapidjson/reader.h>
#include <string>

#include "render/json_memory.h"
#include "render/json_writer.h"

namespace veltrace::cli {
namespace {

/// Bytes that RapidJSON's Reader reads "in place", so that it copies no text: its writes are
/// dropped, and a handler gets each text as it is between its quotation marks.
class Input {
public:
    using Ch = char;

    explicit Input(std::string_view bytes)
        : begin_(bytes.data()), next_(bytes.data()), end_(bytes.data() + bytes.size()) {}

    [[nodiscard]] bool atEnd() const { return next_ == end_; }

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    [[nodiscard]] char Peek() const { return next_ == end_ ? '\0' : *next_; }
    char Take() { return next_ == end_ ? '\0' : *next_++; }
    [[nodiscard]] std::size_t Tell() const { return static_cast<std::size_t>(next_ - begin_); }

    char* PutBegin() { return const_cast<char*>(next_); }  // for reading only
    void Put(char /*c*/) {}
    /// Counts the closing quotation mark in place of the NUL that the Reader writes there.
    std::size_t PutEnd(const char* start) { return static_cast<std::size_t>(next_ - start); }
    // NOLINTEND(readability-identifier-naming)

private:
    const char* begin_;
    const char* next_;
    const char* end_;
};

using Reader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory>;

constexpr unsigned kStrict = rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag |
                             rapidjson::kParseValidateEncodingFlag;

/// Whether a control character or a line separator starts `bytes`, whose first byte is not a
/// printable ASCII character.
bool startsInvisibly(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead == 0xC2) {
        return bytes.size() > 1 && static_cast<unsigned char>(bytes[1]) <= 0x9F;
    }
    return lead < 0x80 || bytes.starts_with("\xE2\x80\xA8") || bytes.starts_with("\xE2\x80\xA9");
}

/// Whether all of eight bytes are printable ASCII characters and none is a backslash.
bool arePlain(const char* bytes) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kHighBits = 0x80 * kOnes;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if ((word & kHighBits) != 0) {
        return false;
    }
    // With the high bits clear no sum carries into the next byte.
    const std::uint64_t reachesBlank = word + (0x80 - 0x20) * kOnes;
    const std::uint64_t reachesDelete = word + (0x80 - 0x7F) * kOnes;
    const std::uint64_t isNoBackslash = (word ^ ('\\' * kOnes)) + 0x7F * kOnes;
    return (reachesBlank & ~reachesDelete & isNoBackslash & kHighBits) == kHighBits;
}

/// Whether `json` has no control character, and no escape but those that `appendText` writes: an
/// escaped half of a surrogate pair is a text for some readers and an error for others.
bool isWrittenVisibly(std::string_view json) {
    for (std::size_t i = 0; i < json.size(); ++i) {
        while (json.size() - i > 8 && arePlain(json.data() + i)) {
            i += 8;
        }
        const auto byte = static_cast<unsigned char>(json[i]);
        if (byte == '\\') {
            const std::string_view escape = json.substr(++i);  // also past a second backslash
            if (escape.starts_with('u') && !escape.starts_with("u00") &&
                !escape.starts_with("u202")) {
                return false;
            }
            // The Reader rejects invalid escapes, control characters among them.
        } else if ((byte < 0x20 || byte >= 0x7F) && startsInvisibly(json.substr(i))) {
            return false;
        }
    }
    return true;
}

/// Ends the parsing when the nesting is deeper than that of any output.
class DepthLimit : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, DepthLimit> {
public:
    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    bool StartArray() { return ++depth_ <= kMaxJsonDepth; }
    bool StartObject() { return ++depth_ <= kMaxJsonDepth; }
    bool EndArray(rapidjson::SizeType /*count*/) { return depth_-- > 0; }
    bool EndObject(rapidjson::SizeType /*count*/) { return depth_-- > 0; }
    // NOLINTEND(readability-identifier-naming)

private:
    std::size_t depth_ = 0;
};

/// Records a value of a list as a pattern, with a character for each of its parts.
class Pattern : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Pattern> {
public:
    [[nodiscard]] const std::string& parts() const { return parts_; }

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    static bool Default() { return false; }
    bool StartArray() { return note('['); }
    bool StartObject() { return note('{'); }
    bool EndArray(rapidjson::SizeType /*count*/) { return note(']'); }
    bool EndObject(rapidjson::SizeType /*count*/) { return note('}'); }

    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        const std::string_view name(text, length);
        return note(name == "at" ? 'a' : name == "is" ? 'i' : name == "size" ? 's' : '?');
    }
    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        const std::string_view value(text, length);
        const bool isName = value == "NaN" || value == "Infinity" || value == "-Infinity";
        return note(value.starts_with("/info/") ? 'P' : isName ? 'N' : '?');
    }
    bool Uint(unsigned /*number*/) { return note('#'); }
    bool Uint64(std::uint64_t /*number*/) { return note('#'); }
    // NOLINTEND(readability-identifier-naming)

private:
    bool note(char part) {
        parts_ += part;
        return parts_.size() < 12;  // more than any kind has
    }

    std::string parts_;
};

std::string_view patternOf(ListedAs kind) {
    switch (kind) {
        case ListedAs::nonfinite:
            return "{aPiN}";
        case ListedAs::latin1:
            return "P";
        case ListedAs::omitted:
            return "{aPs[##]}";
    }
    return {};
}

}  // namespace

bool isJsonArray(std::string_view json) {
    if (!json.starts_with('[') || !isWrittenVisibly(json)) {
        return false;
    }
    Input input(json);
    DepthLimit handler;
    // As strings: their values do not matter here.
    constexpr unsigned kFlags = kStrict | rapidjson::kParseNumbersAsStringsFlag;
    return !Reader().Parse<kFlags>(input, handler).IsError();
}

bool isListOf(ListedAs kind, std::string_view list) {
    if (list.empty()) {
        return true;
    }
    if (!isWrittenVisibly(list)) {
        return false;
    }
    Input input(list);
    Reader reader;
    while (true) {
        Pattern element;
        const auto result =
            reader.Parse<kStrict | rapidjson::kParseStopWhenDoneFlag>(input, element);
        if (result.IsError() || element.parts() != patternOf(kind)) {
            return false;
        }
        if (input.atEnd()) {
            return true;
        }
        if (input.Take() != ',') {
            return false;
        }
    }
}

}  // namespace veltrace::cli
