// A read-only view of a host value.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "zephra/qv.h"

namespace zephra {

/// A view of one array; two words to copy, owns nothing, valid as long as the `CallResult` that it
/// was taken from. A null view stands for an empty place (a field or cell that nothing was stored
/// in) and reads as an empty 0 x 0 double array. Indices are linear, from 0, column-major.
class Value {
public:
    Value() = default;
    explicit Value(const qvArray* array) : array_(array) {}

    /// False for an empty place.
    [[nodiscard]] explicit operator bool() const { return array_ != nullptr; }

    [[nodiscard]] qvClass classCode() const;
    [[nodiscard]] std::string_view className() const;

    /// At least two dimensions.
    [[nodiscard]] std::span<const std::size_t> dimensions() const;
    /// The product of the dimensions.
    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] bool empty() const { return size() == 0; }

    /// The elements of a real double array (of a complex one: the real parts); empty for any other
    /// class.
    [[nodiscard]] std::span<const double> numbers() const;
    /// The elements of a char array as they are; empty for any other class.
    [[nodiscard]] std::span<const qvChar> characters() const;
    /// The low bytes of the elements of a char array, NULs included; empty for any other class.
    [[nodiscard]] std::string text() const;
    /// The elements of a logical array, one byte each, 0 or 1; empty for any other class.
    [[nodiscard]] std::span<const unsigned char> logicals() const;

    /// Number of fields of a structure array; 0 for any other class.
    [[nodiscard]] std::size_t fieldCount() const;
    /// Name of field `index` in creation order; valid as long as this view. `index` must be less
    /// than `fieldCount()`.
    [[nodiscard]] std::string_view fieldName(std::size_t index) const;
    /// Position of the first field with this name.
    [[nodiscard]] std::optional<std::size_t> fieldIndex(std::string_view name) const;
    /// Value of a field of element `element`; null when that place is empty, or when the element
    /// or the field does not exist.
    [[nodiscard]] Value field(std::size_t element, std::size_t index) const;
    [[nodiscard]] Value field(std::size_t element, std::string_view name) const;

    /// Value of cell `index`; null when that place is empty or does not exist.
    [[nodiscard]] Value cell(std::size_t index) const;

private:
    const qvArray* array_ = nullptr;
};

}  // namespace zephra
