#include "render/json_value.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <fmt/format.h>
#include <span>
#include <vector>

#include "render/escape.h"

namespace veltrace::cli {
namespace {

void writeElement(JsonWriter& json, double number) {
    if (!std::isfinite(number)) {
        json.Null();
        return;
    }
    // The shortest text that reads back as the same double; whole numbers below 1e16 come without
    // fraction and exponent. No such text has more than 24 characters.
    std::array<char, 32> text{};
    const char* const end = fmt::format_to_n(text.data(), text.size(), "{}", number).out;
    json.RawValue(text.data(), static_cast<std::size_t>(end - text.data()), rapidjson::kNumberType);
}

void writeElement(JsonWriter& json, unsigned char logical) {
    json.Bool(logical != 0);
}

template <typename Element>
void writeArray(JsonWriter& json, std::span<const Element> elements, std::size_t rows) {
    if (elements.empty()) {
        json.Null();
        return;
    }
    if (elements.size() == 1) {
        writeElement(json, elements.front());
        return;
    }
    const bool isFlat = rows == 1 || rows == elements.size();
    json.StartArray();
    for (std::size_t row = 0; row < rows; ++row) {
        if (!isFlat) {
            json.StartArray();
        }
        for (std::size_t i = row; i < elements.size(); i += rows) {
            writeElement(json, elements[i]);
        }
        if (!isFlat) {
            json.EndArray();
        }
    }
    json.EndArray();
}

/// Writes one value. What is open is kept in a list, not on the call stack: values nest thousands
/// deep.
class ValueWriter {
public:
    explicit ValueWriter(JsonWriter& json) : json_(json) {}

    void write(zephra::Value root) {
        begin(root);
        while (!open_.empty()) {
            if (open_.back().container.classCode() == qvClassCell) {
                continueCell();
            } else {
                continueStructure();
            }
        }
    }

private:
    struct Open {
        zephra::Value container;
        std::size_t element = 0;
        std::size_t field = 0;
    };

    void begin(zephra::Value value) {
        switch (value.classCode()) {
            case qvClassCell:
            case qvClassStruct:
                json_.StartArray();
                open_.push_back({value});
                break;
            case qvClassChar:
                writeJson(json_, value.text());
                break;
            case qvClassLogical:
                writeArray(json_, value.logicals(), value.dimensions().front());
                break;
            case qvClassDouble:
                writeArray(json_, value.numbers(), value.dimensions().front());
                break;
        }
    }

    void continueCell() {
        Open& cell = open_.back();
        if (cell.element == cell.container.size()) {
            end();
        } else {
            begin(cell.container.cell(cell.element++));
        }
    }

    void continueStructure() {
        Open& structure = open_.back();
        if (structure.element == structure.container.size()) {
            end();
            return;
        }
        if (structure.field == 0) {
            json_.StartObject();
        }
        if (structure.field == structure.container.fieldCount()) {
            json_.EndObject();
            ++structure.element;
            structure.field = 0;
            return;
        }
        writeJson(json_, structure.container.fieldName(structure.field));
        begin(structure.container.field(structure.element, structure.field++));
    }

    void end() {
        json_.EndArray();
        open_.pop_back();
    }

    JsonWriter& json_;
    std::vector<Open> open_;
};

}  // namespace

void writeJson(JsonWriter& json, zephra::Value value) {
    ValueWriter(json).write(value);
}

void writeJson(JsonWriter& json, std::string_view bytes) {
    const std::string text = asUtf8(bytes);
    // A host array has at most 2^30 bytes, so its text fits RapidJSON's 32-bit size.
    json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

}  // namespace veltrace::cli
