#include "render/json_writer.h"

#include <fmt/format.h>

#include "render/json_text.h"

namespace veltrace::cli {

void JsonWriter::open() {
    if (++depth_ > kMaxJsonDepth) {
        throw OutputTooLarge();
    }
}

void JsonWriter::startArray() {
    open();
    writer_.StartArray();
}

void JsonWriter::endArray() {
    --depth_;
    writer_.EndArray();
}

void JsonWriter::startObject() {
    open();
    writer_.StartObject();
}

void JsonWriter::endObject() {
    --depth_;
    writer_.EndObject();
}

void JsonWriter::key(std::string_view name) {
    text(name);
}

bool JsonWriter::text(std::string_view bytes) {
    separate(rapidjson::kStringType);
    return appendText(out_, bytes);
}

void JsonWriter::number(double number) {
    separate(rapidjson::kNumberType);
    appendNumber(out_, number);
}

void JsonWriter::number(std::uint64_t number) {
    const fmt::format_int text(number);
    raw({text.data(), text.size()});
}

void JsonWriter::numbers(std::span<const double> numbers) {
    open();
    separate(rapidjson::kArrayType);
    out_.append('[');
    appendNumbers(out_, numbers);
    out_.append(']');
    --depth_;
}

void JsonWriter::raw(std::string_view json) {
    separate(rapidjson::kNullType);
    out_.append(json);
}

}  // namespace veltrace::cli
