// JSON, piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <rapidjson/writer.h>
#include <span>
#include <string_view>

#include "render/bounded_text.h"
#include "render/json_memory.h"

namespace veltrace::cli {

/// Nesting of arrays and objects that a text may have. The stack of a thread limits the nesting of
/// any file to far less.
inline constexpr std::size_t kMaxJsonDepth = std::size_t{1} << 20;

/// Writes one JSON value to `out`, which outlives it. RapidJSON's Writer writes brackets, commas
/// and colons; texts and numbers go to `out` in whole pieces. In an object, keys and values
/// alternate. Every operation throws OutputTooLarge.
class JsonWriter {
public:
    explicit JsonWriter(BoundedText& out) : out_(out), stream_{&out}, writer_(stream_) {}

    void startArray();
    void endArray();
    void startObject();
    void endObject();

    void key(std::string_view name);
    /// Returns whether `bytes` are UTF-8, see `appendText`.
    bool text(std::string_view bytes);
    /// `number` is finite.
    void number(double number);
    void number(std::uint64_t number);
    /// A list of finite numbers.
    void numbers(std::span<const double> numbers);
    void boolean(bool value) { raw(value ? "true" : "false"); }
    void null() { raw("null"); }
    /// A value that is already JSON.
    void raw(std::string_view json);

private:
    struct Stream {
        using Ch = char;
        // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
        void Put(char c) const { text->append(c); }
        void Flush() const {}
        // NOLINTEND(readability-identifier-naming)
        BoundedText* text;
    };

    void open();
    /// Writes what precedes a value whose text follows.
    void separate(rapidjson::Type type) { writer_.RawValue("", 0, type); }

    BoundedText& out_;
    Stream stream_;
    rapidjson::Writer<Stream, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory> writer_;
    std::size_t depth_ = 0;
};

}  // namespace veltrace::cli
