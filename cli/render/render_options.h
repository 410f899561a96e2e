// The user's options for the values in the output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace veltrace::cli {

enum class Format : std::uint8_t { text, json, ndjson, csv };

struct RenderOptions {
    Format format = Format::text;
    /// Dotted paths of field names; empty: every field. A path that ends at a directory selects it
    /// whole, and a path goes into every directory of a chain.
    std::vector<std::string> fields;
    /// Elements of an array that text shows.
    std::size_t maxValues = 12;
    /// JSON leaves out values with more elements.
    std::optional<std::size_t> omitLargerThan;
    /// Text is marked up for a terminal.
    bool colour = false;
    /// Bytes that one rendering may have.
    std::size_t maxOutput = std::size_t{16} << 20;
};

}  // namespace veltrace::cli
