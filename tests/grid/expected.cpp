#include "grid/expected.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <stdexcept>
#include <utility>

namespace veltrace::test {

namespace {

bool isSameNumber(double left, double right) {
    return left == right ? std::signbit(left) == std::signbit(right)
                         : std::isnan(left) && std::isnan(right);
}

const char* className(Expected::Kind kind) {
    switch (kind) {
        case Expected::Kind::text:
            return "char";
        case Expected::Kind::words:
            return "cell";
        case Expected::Kind::structures:
            return "struct";
        default:
            return "double";
    }
}

std::string mismatchOfCells(zephra::Value value, const Expected& expected) {
    for (std::size_t i = 0; i < expected.words.size(); ++i) {
        const std::string mismatch = mismatchOf(value.cell(i), Expected::string(expected.words[i]));
        if (!mismatch.empty()) {
            return "{" + std::to_string(i) + "}" + mismatch;
        }
    }
    return {};
}

std::string mismatchOfFields(zephra::Value value, const Expected& expected) {
    for (std::size_t i = 0; i < std::min(value.fieldCount(), expected.fields.size()); ++i) {
        if (value.fieldName(i) != expected.fields[i]) {
            return ": field " + std::string(value.fieldName(i)) + ", not " + expected.fields[i];
        }
    }
    if (value.fieldCount() != expected.fields.size()) {
        return ": " + std::to_string(value.fieldCount()) + " fields, not " +
               std::to_string(expected.fields.size());
    }
    for (std::size_t place = 0; place < expected.places.size(); ++place) {
        const std::size_t element = place / expected.fields.size();
        const std::size_t field = place % expected.fields.size();
        const std::string mismatch =
            mismatchOf(value.field(element, field), expected.places[place]);
        if (!mismatch.empty()) {
            return "(" + std::to_string(element) + ")." + expected.fields[field] + mismatch;
        }
    }
    return {};
}

}  // namespace

Expected Expected::anything() {
    Expected expected;
    expected.kind = Kind::anything;
    return expected;
}

Expected Expected::number(double value) {
    return column({value});
}

Expected Expected::column(std::vector<double> values) {
    Expected expected;
    expected.kind = Kind::numbers;
    expected.rows = values.size();
    expected.columns = 1;
    expected.numbers = std::move(values);
    return expected;
}

Expected Expected::row(std::vector<double> values) {
    Expected expected = column(std::move(values));
    std::swap(expected.rows, expected.columns);
    return expected;
}

Expected Expected::emptyDouble() {
    Expected expected;
    expected.kind = Kind::numbers;
    return expected;
}

Expected Expected::string(std::string text) {
    Expected expected;
    expected.kind = Kind::text;
    expected.rows = 1;
    expected.columns = text.size();
    expected.text = std::move(text);
    return expected;
}

Expected Expected::cells(std::vector<std::string> words) {
    Expected expected;
    expected.kind = Kind::words;
    expected.rows = words.size();
    expected.columns = 1;
    expected.words = std::move(words);
    return expected;
}

Expected Expected::structures(std::size_t count, std::vector<std::string> fields) {
    Expected expected;
    expected.kind = Kind::structures;
    expected.rows = count;
    expected.columns = 1;
    expected.places.resize(count * fields.size());
    expected.fields = std::move(fields);
    return expected;
}

Expected& Expected::place(std::size_t element, const std::string& field) {
    const auto found = std::ranges::find(fields, field);
    if (found == fields.end()) {
        throw std::logic_error("no field " + field);
    }
    return places[element * fields.size() + static_cast<std::size_t>(found - fields.begin())];
}

std::string mismatchOf(zephra::Value value, const Expected& expected) {
    if (expected.kind == Expected::Kind::anything) {
        return {};
    }
    if (static_cast<bool>(value) == (expected.kind == Expected::Kind::nothing)) {
        return value ? ": a value, where nothing should be" : ": nothing";
    }
    if (!value) {
        return {};
    }
    if (value.className() != className(expected.kind)) {
        return ": class " + std::string(value.className());
    }
    const bool isEmptyText = expected.kind == Expected::Kind::text && expected.text.empty();
    const std::size_t dimensions[] = {expected.rows, expected.columns};
    if (isEmptyText ? !value.empty() : !std::ranges::equal(value.dimensions(), dimensions)) {
        return ": dimensions " + testing::PrintToString(value.dimensions());
    }
    switch (expected.kind) {
        case Expected::Kind::numbers:
            return std::ranges::equal(value.numbers(), expected.numbers, isSameNumber)
                       ? ""
                       : ": numbers " + testing::PrintToString(value.numbers()) + ", not " +
                             testing::PrintToString(expected.numbers);
        case Expected::Kind::text:
            return value.text() == expected.text ? ""
                                                 : ": text " + testing::PrintToString(value.text());
        case Expected::Kind::words:
            return mismatchOfCells(value, expected);
        default:
            return mismatchOfFields(value, expected);
    }
}

}  // namespace veltrace::test
