// Host values as the text of one cell.
#pragma once

#include "zephra/host/value.h"

#include "render/bounded_text.h"

namespace veltrace::cli {

/// Appends `value` as one line: characters without their trailing NULs and with everything that is
/// not printable escaped, numbers as the shortest text that reads back, the elements of an array
/// row by row with a blank between them. A structure array, and a cell array within a cell, is
/// replaced by its size. Throws OutputTooLarge.
void appendCsvValue(BoundedText& out, zephra::Value value);

}  // namespace veltrace::cli
