// Creates and stores host values.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "zephra/qv.h"

namespace veltrace::module {

/// A new 1 x n char array of the bytes, each widened without sign; null if the host cannot create
/// it.
[[nodiscard]] qvArray* charRow(std::string_view bytes);

/// A new rows x columns double array filled in column order from `values`, which must have
/// rows x columns numbers; null if the host cannot create it.
[[nodiscard]] qvArray* doubleMatrix(std::size_t rows, std::size_t columns,
                                    std::span<const double> values);

/// Stores a value in a field. A null value leaves the field unchanged.
void storeField(qvArray* structure, std::size_t index, const char* name, qvArray* value);

}  // namespace veltrace::module
