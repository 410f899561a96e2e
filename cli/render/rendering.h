// The output of one file in its format.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace veltrace::cli {

/// JSON lists are written without their brackets: elements separated by commas, or nothing.
struct Rendering {
    /// text: whole lines; json and ndjson: a JSON array of directories, in one line.
    std::string body;
    /// json and ndjson: {"at", "is"} of each number that JSON cannot represent.
    std::string nonfinite;
    /// json and ndjson: the place of each text that is not valid UTF-8.
    std::string latin1;
    /// json and ndjson: {"at", "size"} of each value left out for its size.
    std::string omitted;
    /// csv: see `CsvRenderer`.
    std::vector<std::string> cells;
    /// Indices of the selected fields that occur, ascending.
    std::vector<std::uint32_t> fieldsSeen;

    friend bool operator==(const Rendering&, const Rendering&) = default;
};

}  // namespace veltrace::cli
