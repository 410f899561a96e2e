// Values and messages as a module makes them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zephra/host/host.h"
#include "zephra/qv.h"
#include "zephra/qvx.h"

#include "render/render_options.h"

namespace veltrace::cli {

inline RenderOptions selecting(std::vector<std::string> fields) {
    RenderOptions options;
    options.fields = std::move(fields);
    return options;
}

/// The result of a module whose only work is `body`; what it returns is the output.
inline zephra::CallResult called(const std::function<qvArray*()>& body) {
    const zephra::EntryPoint entryPoint = [&](int, qvArray* outputs[], int, const qvArray*[]) {
        outputs[0] = body();
    };
    return zephra::Host().call(entryPoint, {});
}

/// `values` in column-major order.
inline qvArray* numbers(std::size_t rows, std::size_t columns,
                        std::initializer_list<double> values) {
    const std::array<std::size_t, 2> size{rows, columns};
    qvArray* const array = qvCreateNumericArray(2, size.data(), qvClassDouble, qvReal);
    std::ranges::copy(values, static_cast<double*>(qvGetData(array)));
    return array;
}

inline qvArray* number(double value) {
    return qvCreateDoubleScalar(value);
}

/// `values` in column-major order.
inline qvArray* logicals(std::size_t rows, std::size_t columns,
                         std::initializer_list<unsigned char> values) {
    const std::array<std::size_t, 2> size{rows, columns};
    qvArray* const array = qvCreateNumericArray(2, size.data(), qvClassLogical, qvReal);
    std::ranges::copy(values, static_cast<unsigned char*>(qvGetData(array)));
    return array;
}

inline qvArray* characters(std::string_view bytes) {
    const std::array<std::size_t, 2> size{1, bytes.size()};
    qvArray* const array = qvCreateCharArray(2, size.data());
    std::ranges::transform(bytes, static_cast<qvChar*>(qvGetData(array)),
                           [](char c) { return static_cast<unsigned char>(c); });
    return array;
}

inline qvArray* cells(const std::vector<qvArray*>& values) {
    const std::size_t size = values.size();
    qvArray* const array = qvCreateCellArray(1, &size);
    for (std::size_t i = 0; i < size; ++i) {
        qvSetCell(array, i, values[i]);
    }
    return array;
}

using Fields = std::vector<std::pair<const char*, qvArray*>>;

/// N x 1, with the field names of the first element. A null value leaves a field empty.
inline qvArray* structures(const std::vector<Fields>& elements) {
    std::vector<const char*> names;
    for (const auto& field : elements.front()) {
        names.push_back(field.first);
    }
    const std::size_t size = elements.size();
    qvArray* const array =
        qvCreateStructArray(1, &size, static_cast<int>(names.size()), names.data());
    for (std::size_t i = 0; i < size; ++i) {
        for (const auto& [name, value] : elements[i]) {
            qvSetField(array, i, name, value);
        }
    }
    return array;
}

/// `depth` structures, each in the field "Next" of the one before; the innermost field is empty.
inline qvArray* nestedStructures(std::size_t depth) {
    qvArray* value = nullptr;
    for (std::size_t i = 0; i < depth; ++i) {
        value = structures({{{"Next", value}}});
    }
    return value;
}

}  // namespace veltrace::cli
