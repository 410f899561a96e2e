// Host values as one line of text.
#pragma once

#include <cstddef>

#include "zephra/host/value.h"

#include "render/bounded_text.h"
#include "render/text_style.h"

namespace veltrace::cli {

/// Whether there is nothing to show: the value is empty, or all of its characters are NUL.
[[nodiscard]] bool isBlank(zephra::Value value);

/// Writes values for a person, each in one line that is safe for a terminal: characters without
/// their trailing NULs, numbers and cells separated by commas, the rows of a matrix by semicolons.
/// A structure array, and a cell array within a cell, is replaced by its size.
/// Of an array only the first `maxValues` elements are shown, of a text the first 400 bytes, then
/// its size. Throws OutputTooLarge.
class TextValueWriter {
public:
    TextValueWriter(BoundedText& out, std::size_t maxValues, TextStyle style)
        : out_(out), maxValues_(maxValues), style_(style) {}

    void write(zephra::Value value);

private:
    void writeText(zephra::Value value);
    void writeSize(zephra::Value container);
    void writeArray(zephra::Value value);
    void writeElement(zephra::Value value, std::size_t index);
    void writeCell(zephra::Value value);

    BoundedText& out_;
    std::size_t maxValues_;
    TextStyle style_;
};

}  // namespace veltrace::cli
