// Values and messages as a module makes them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
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

/// Makes an array in the call of a module; an empty one makes none.
using Make = std::function<qvArray*()>;

/// The result of a module whose output is what `make` makes.
inline zephra::CallResult called(const Make& make) {
    const zephra::EntryPoint entryPoint = [&](int, qvArray* outputs[], int, const qvArray*[]) {
        outputs[0] = make ? make() : nullptr;
    };
    return zephra::Host().call(entryPoint, {});
}

/// `values` in column-major order.
template <class Element>
Make numeric(qvClass classCode, std::array<std::size_t, 2> size, std::vector<Element> values) {
    return [classCode, size, values = std::move(values)] {
        qvArray* const array = qvCreateNumericArray(2, size.data(), classCode, qvReal);
        std::ranges::copy(values, static_cast<Element*>(qvGetData(array)));
        return array;
    };
}

inline Make numbers(std::size_t rows, std::size_t columns, std::vector<double> values) {
    return numeric(qvClassDouble, {rows, columns}, std::move(values));
}

inline Make number(double value) {
    return [value] { return qvCreateDoubleScalar(value); };
}

inline Make logicals(std::size_t rows, std::size_t columns, std::vector<unsigned char> values) {
    return numeric(qvClassLogical, {rows, columns}, std::move(values));
}

inline Make characters(std::string_view text) {
    return [bytes = std::string(text)] {
        const std::array<std::size_t, 2> size{1, bytes.size()};
        qvArray* const array = qvCreateCharArray(2, size.data());
        std::ranges::transform(bytes, static_cast<qvChar*>(qvGetData(array)),
                               [](char c) { return static_cast<unsigned char>(c); });
        return array;
    };
}

inline Make cells(const std::vector<Make>& values) {
    return [values] {
        const std::size_t size = values.size();
        qvArray* const array = qvCreateCellArray(1, &size);
        for (std::size_t i = 0; i < size; ++i) {
            qvSetCell(array, i, values[i] ? values[i]() : nullptr);
        }
        return array;
    };
}

using Fields = std::vector<std::pair<const char*, Make>>;

/// N x 1, with the field names of the first element. An empty `Make` leaves a field empty.
inline Make structures(const std::vector<Fields>& elements) {
    return [elements] {
        std::vector<const char*> names;
        for (const auto& field : elements.front()) {
            names.push_back(field.first);
        }
        const std::size_t size = elements.size();
        qvArray* const array =
            qvCreateStructArray(1, &size, static_cast<int>(names.size()), names.data());
        for (std::size_t i = 0; i < size; ++i) {
            for (const auto& [name, make] : elements[i]) {
                qvSetField(array, i, name, make ? make() : nullptr);
            }
        }
        return array;
    };
}

/// `depth` structures, each in the field "Next" of the one before; the innermost field is empty.
inline Make nestedStructures(std::size_t depth) {
    return [depth] {
        qvArray* value = nullptr;
        for (std::size_t i = 0; i < depth; ++i) {
            value = structures({{{"Next", [value] { return value; }}}})();
        }
        return value;
    };
}

}  // namespace veltrace::cli
