// What a value should be.
#pragma once

#include <string>
#include <vector>

#include "zephra/host/value.h"

namespace veltrace::test {

struct Expected {
    enum class Kind { nothing, anything, numbers, text, words, structures };

    Kind kind = Kind::nothing;
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<double> numbers;
    std::string text;
    std::vector<std::string> words;   ///< of a column of cells
    std::vector<std::string> fields;  ///< of structures, in order
    std::vector<Expected> places;     ///< values of the fields, element by element

    [[nodiscard]] static Expected anything();
    [[nodiscard]] static Expected number(double value);
    [[nodiscard]] static Expected column(std::vector<double> values);
    [[nodiscard]] static Expected row(std::vector<double> values);
    [[nodiscard]] static Expected emptyDouble();
    [[nodiscard]] static Expected string(std::string text);
    [[nodiscard]] static Expected cells(std::vector<std::string> words);
    /// A column of structures; `places` are filled in by the caller.
    [[nodiscard]] static Expected structures(std::size_t count, std::vector<std::string> fields);

    [[nodiscard]] Expected& place(std::size_t element, const std::string& field);
};

/// Where a value is not as expected, and how; empty when it is.
[[nodiscard]] std::string mismatchOf(zephra::Value value, const Expected& expected);

}  // namespace veltrace::test
