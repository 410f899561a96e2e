#include "support/shown_values.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <span>
#include <sstream>

#include "support/encodings.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

std::string shownNumber(double number) {
    if (std::isnan(number)) {
        return "nan";
    }
    constexpr double kLargestWhole = 1e15;
    if (number == std::trunc(number) && std::abs(number) < kLargestWhole) {
        return (std::signbit(number) ? "-" : "") +
               std::to_string(static_cast<std::int64_t>(std::abs(number)));
    }
    char digits[40];
    return {digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr};
}

std::string shownText(std::span<const qvChar> characters) {
    std::ostringstream quoted;
    quoted << std::hex << std::uppercase << '\'';
    for (const qvChar character : characters) {
        if (character == 0) {
            quoted << "\\0";
        } else if (character < 0x80) {
            quoted << static_cast<char>(character);
        } else {
            quoted << "\\x" << character;
        }
    }
    return quoted.str() + "'";
}

std::string withoutLast(std::string text) {
    if (!text.empty()) {
        text.pop_back();
    }
    return text;
}

std::string sizeOf(zephra::Value value) {
    std::string size;
    for (const std::size_t dimension : value.dimensions()) {
        size += std::to_string(dimension) + "x";
    }
    return withoutLast(size);
}

std::string shownCells(zephra::Value value) {
    std::string cells;
    for (std::size_t i = 0; i < value.size(); ++i) {
        cells += shown(value.cell(i)) + " ";
    }
    return sizeOf(value) + " {" + withoutLast(cells) + "}";
}

std::string shownNumbers(zephra::Value value) {
    std::string numbers;
    for (const double number : value.numbers()) {
        numbers += shownNumber(number) + " ";
    }
    const std::string size = sizeOf(value);
    return size == "1x1" ? withoutLast(numbers) : size + " [" + withoutLast(numbers) + "]";
}

std::string shownFields(const ModuleRun& run, const std::string& fields) {
    std::istringstream names(fields);
    std::string all;
    for (std::string name; names >> name;) {
        all += all.empty() ? "" : "; ";
        all += run.hasField({name}) ? shown(run.value({name})) : "no field";
    }
    return all;
}

void expectRow(const ShownRow& row, const Bytes& file) {
    const ModuleRun run(file);
    EXPECT_EQ(shownFields(run, row.fields), row.shown) << row.fields;
    EXPECT_THAT(run.messages(), testing::ElementsAreArray(row.messages)) << row.fields;
}

}  // namespace

std::string shown(zephra::Value value) {
    if (!value) {
        return "none";
    }
    if (value.className() == "char") {
        const std::string text = shownText(value.characters());
        const bool isRow = value.dimensions().front() == 1;
        return isRow ? text : sizeOf(value) + " " + text;
    }
    if (value.className() == "cell") {
        return shownCells(value);
    }
    return value.className() == "double" ? shownNumbers(value) : sizeOf(value) + " struct";
}

void expectShown(const std::vector<ShownRow>& rows) {
    for (const Encoding& encoding : kEveryEncoding) {
        SCOPED_TRACE(encodingName({encoding, 0}));
        for (const ShownRow& row : rows) {
            expectRow(row, tiffOf(encoding, row.directory));
        }
    }
}

void expectShownInJpeg(const std::vector<ShownRow>& rows) {
    for (const ShownRow& row : rows) {
        expectRow(row, jpegWithExif(tiffOf(row.directory)));
    }
}

}  // namespace veltrace::test
