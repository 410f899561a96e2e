#include "render/value_summary.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fmt/format.h>
#include <string_view>

#include "render/escape.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kShownElements = 12;
constexpr std::size_t kShownBytes = 400;

std::string sizeOf(zephra::Value value) {
    return fmt::format("{}", fmt::join(value.dimensions(), " x "));
}

std::string textSummary(zephra::Value value) {
    std::string text = value.text();
    while (text.ends_with('\0')) {
        text.pop_back();
    }
    const std::string_view shown = firstBytes(text, kShownBytes);
    std::string line = visible(shown);
    if (shown.size() < text.size()) {
        line += fmt::format("... [{} bytes]", text.size());
    }
    return line;
}

/// Whole numbers in full, others to seven digits: more of them say nothing of a quotient that was
/// stored as two integers or of a single-precision number.
std::string numberText(double number) {
    if (std::isnan(number)) {
        return "NaN";
    }
    return number == std::trunc(number) ? fmt::format("{}", number) : fmt::format("{:.7g}", number);
}

std::string scalarSummary(zephra::Value value, std::size_t index);

/// The elements row by row, so that the colours of a colour map stand together.
std::string arraySummary(zephra::Value value) {
    std::string line;
    if (value.empty()) {
        return line;
    }
    const std::size_t rows = value.dimensions().front();
    const std::size_t columns = value.size() / rows;
    const std::size_t shown = std::min(value.size(), kShownElements);
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) {
            line += i % columns == 0 && columns > 1 ? "; " : ", ";
        }
        line += scalarSummary(value, i % columns * rows + i / columns);
    }
    if (shown < value.size()) {
        line += fmt::format(", ... [{}]", sizeOf(value));
    }
    return line;
}

/// A container within a cell is only named: a line has no room for more.
std::string cellSummary(zephra::Value value) {
    switch (value.classCode()) {
        case qvClassCell:
        case qvClassStruct:
            return fmt::format("[{} {}]", sizeOf(value), value.className());
        default:
            return summary(value);
    }
}

std::string scalarSummary(zephra::Value value, std::size_t index) {
    switch (value.classCode()) {
        case qvClassCell:
            return cellSummary(value.cell(index));
        case qvClassLogical:
            return value.logicals()[index] != 0 ? "true" : "false";
        default:
            return numberText(value.numbers()[index]);
    }
}

}  // namespace

std::string summary(zephra::Value value) {
    return value.classCode() == qvClassChar ? textSummary(value) : arraySummary(value);
}

}  // namespace veltrace::cli
