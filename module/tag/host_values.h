// Small host values and how they are stored.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "zephra/qv.h"

namespace veltrace::module {

/// A new 1 x n char array of the bytes, each widened without sign; null when the host cannot make
/// it.
[[nodiscard]] qvArray* charRow(std::string_view bytes);

/// A new rows x columns double array of zeros; null when the host cannot make it.
[[nodiscard]] qvArray* createDoubleMatrix(std::size_t rows, std::size_t columns);

/// A new rows x columns double array filled in column order from `values`, which must hold
/// rows x columns numbers; null when the host cannot make it.
[[nodiscard]] qvArray* doubleMatrix(std::size_t rows, std::size_t columns,
                                    std::span<const double> values);

/// Stores a value in a field. A null value is not stored at all, so what was there stays.
void storeField(qvArray* structure, std::size_t index, const char* name, qvArray* value);

}  // namespace veltrace::module
