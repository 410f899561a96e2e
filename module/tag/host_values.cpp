#include "tag/host_values.h"

#include <algorithm>
#include <array>

namespace veltrace::module {

qvArray* charRow(std::string_view bytes) {
    const std::array<std::size_t, 2> dimensions{1, bytes.size()};
    qvArray* row = qvCreateCharArray(dimensions.size(), dimensions.data());
    if (row != nullptr) {
        std::ranges::transform(bytes, static_cast<qvChar*>(qvGetData(row)),
                               [](char byte) { return static_cast<unsigned char>(byte); });
    }
    return row;
}

qvArray* doubleMatrix(std::size_t rows, std::size_t columns, std::span<const double> values) {
    if (rows * columns == 1) {
        return qvCreateDoubleScalar(values.front());  // most tags have one number
    }
    const std::array<std::size_t, 2> dimensions{rows, columns};
    qvArray* matrix =
        qvCreateNumericArray(dimensions.size(), dimensions.data(), qvClassDouble, qvReal);
    if (matrix != nullptr) {
        std::ranges::copy(values.first(rows * columns), static_cast<double*>(qvGetData(matrix)));
    }
    return matrix;
}

void storeField(qvArray* structure, std::size_t index, const char* name, qvArray* value) {
    if (value != nullptr) {
        qvSetField(structure, index, name, value);
    }
}

}  // namespace veltrace::module
