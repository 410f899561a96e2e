// Values made up from bytes, as a module might return them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "zephra/qv.h"

#include "parameters.h"

namespace veltrace::fuzz {

/// A value before the host has it, so that what comes out can be compared with what went in.
struct MadeValue {
    enum class Kind : std::uint8_t { nothing, logical, number, text, cells, directories };

    Kind kind = Kind::nothing;
    std::vector<std::size_t> size;    ///< its dimensions, none of nothing
    std::vector<double> numbers;      ///< of a number or logical; column-major
    std::string text;                 ///< one row
    std::vector<std::string> names;   ///< of fields; they differ, also as characters
    std::vector<MadeValue> contents;  ///< of cells; of directories one for each field of each

    [[nodiscard]] std::size_t rows() const { return size.empty() ? 0 : size.front(); }
    /// Of cells, directories, numbers: their number; of a text: its bytes.
    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] const MadeValue& field(std::size_t element, std::size_t index) const {
        return contents[element * names.size() + index];
    }
};

/// A list of directories, or nothing.
[[nodiscard]] MadeValue madeOutput(Parameters& parameters);

/// The name of a field: one of those that the command knows, or any bytes but NUL.
[[nodiscard]] std::string madeName(Parameters& parameters);

/// What stands for `bytes` in JSON: they themselves if they are UTF-8, else a character for each.
[[nodiscard]] std::string charactersOf(std::string_view bytes);

/// Within a call of a host: the array of `value`, null for nothing.
[[nodiscard]] qvArray* toArray(const MadeValue& value);

}  // namespace veltrace::fuzz
