#include "render/text_value.h"

#include <algorithm>
#include <fmt/format.h>
#include <string>
#include <string_view>

#include "render/escape.h"
#include "render/measured_value.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kMaxShownBytes = 400;

std::string sizeOf(zephra::Value value) {
    return fmt::format("{}", fmt::join(value.dimensions(), " x "));
}

}  // namespace

bool isBlank(zephra::Value value) {
    if (value.classCode() != qvClassChar) {
        return value.empty();
    }
    return std::ranges::all_of(value.characters(), [](qvChar c) { return (c & 0xFFU) == 0; });
}

void TextValueWriter::write(zephra::Value value) {
    if (value.classCode() == qvClassChar) {
        writeText(value);
    } else if (value.classCode() == qvClassStruct) {
        writeSize(value);
    } else if (!value.empty()) {
        writeArray(value);
    }
}

void TextValueWriter::writeSize(zephra::Value container) {
    out_.append(style_.aside(fmt::format("[{} {}]", sizeOf(container), container.className())));
}

void TextValueWriter::writeText(zephra::Value value) {
    const std::string text = withoutFinalNuls(value.text());
    const std::string_view shown = firstBytes(text, kMaxShownBytes);
    out_.append(visible(shown));
    if (shown.size() < text.size()) {
        out_.append("... ");
        out_.append(style_.aside(fmt::format("[{} bytes]", text.size())));
    }
}

/// The elements row by row, so that each row of a colour map is one colour.
void TextValueWriter::writeArray(zephra::Value value) {
    const std::size_t rows = value.dimensions().front();
    const std::size_t columns = value.size() / rows;
    const std::size_t shown = std::min(value.size(), maxValues_);
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) {
            out_.append(i % columns == 0 && columns > 1 ? "; " : ", ");
        }
        writeElement(value, i % columns * rows + i / columns);
    }
    if (shown < value.size()) {
        out_.append(shown > 0 ? ", ... " : "... ");
        out_.append(style_.aside(fmt::format("[{}]", sizeOf(value))));
    }
}

void TextValueWriter::writeElement(zephra::Value value, std::size_t index) {
    switch (value.classCode()) {
        case qvClassCell:
            writeCell(value.cell(index));
            break;
        case qvClassLogical:
            out_.append(value.logicals()[index] != 0 ? "true" : "false");
            break;
        default:
            out_.append(briefNumber(value.numbers()[index]));
    }
}

/// A cell array within a cell is replaced by its size: a line has no room for more.
void TextValueWriter::writeCell(zephra::Value value) {
    if (value.classCode() == qvClassCell) {
        writeSize(value);
    } else {
        write(value);
    }
}

}  // namespace veltrace::cli
