#include "reference/value_json.h"

#include <bit>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace veltrace::test {

namespace {

void appendUtf8(std::string& text, unsigned char character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else {
        text += static_cast<char>(0xc0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3f));
    }
}

void appendHex(std::string& digits, std::uint64_t number, int bits) {
    for (int shift = bits - 4; shift >= 0; shift -= 4) {
        digits += "0123456789abcdef"[(number >> shift) & 0xf];
    }
}

void writeText(JsonWriter& writer, std::string_view text) {
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void writeNumbers(JsonWriter& writer, std::span<const double> numbers) {
    std::string digits;
    digits.reserve(numbers.size() * 16);
    for (const double number : numbers) {
        appendHex(digits, std::bit_cast<std::uint64_t>(number), 64);
    }
    writer.Key("bits");
    writeText(writer, digits);
}

void writeCharacters(JsonWriter& writer, std::span<const qvChar> characters) {
    std::string digits;
    digits.reserve(characters.size() * 4);
    for (const qvChar character : characters) {
        appendHex(digits, character, 16);
    }
    writer.Key("units");
    writeText(writer, digits);
}

void writeCells(JsonWriter& writer, const zephra::Value& value) {
    writer.Key("cells");
    writer.StartArray();
    for (std::size_t i = 0; i < value.size(); ++i) {
        writeValue(writer, value.cell(i));
    }
    writer.EndArray();
}

void writeElements(JsonWriter& writer, const zephra::Value& value) {
    writer.Key("fields");
    writer.StartArray();
    for (std::size_t field = 0; field < value.fieldCount(); ++field) {
        writeBytes(writer, value.fieldName(field));
    }
    writer.EndArray();
    writer.Key("elements");
    writer.StartArray();
    for (std::size_t element = 0; element < value.size(); ++element) {
        writer.StartArray();
        for (std::size_t field = 0; field < value.fieldCount(); ++field) {
            writeValue(writer, value.field(element, field));
        }
        writer.EndArray();
    }
    writer.EndArray();
}

void writeContent(JsonWriter& writer, const zephra::Value& value) {
    switch (value.classCode()) {
        case qvClassCell:
            return writeCells(writer, value);
        case qvClassStruct:
            return writeElements(writer, value);
        case qvClassChar:
            return writeCharacters(writer, value.characters());
        case qvClassDouble:
            return writeNumbers(writer, value.numbers());
        case qvClassLogical:
            break;
    }
    throw std::invalid_argument("the module makes no array of this class");
}

}  // namespace

void writeBytes(JsonWriter& writer, std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        appendUtf8(text, static_cast<unsigned char>(byte));
    }
    writeText(writer, text);
}

void writeValue(JsonWriter& writer, const zephra::Value& value) {
    if (!value) {
        writer.Null();
        return;
    }
    writer.StartObject();
    writer.Key("class");
    writeText(writer, value.className());
    writer.Key("dimensions");
    writer.StartArray();
    for (const std::size_t dimension : value.dimensions()) {
        writer.Uint64(dimension);
    }
    writer.EndArray();
    writeContent(writer, value);
    writer.EndObject();
}

}  // namespace veltrace::test
