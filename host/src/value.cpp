#include "zephra/host/value.h"

#include <algorithm>
#include <array>

#include "array.h"

namespace zephra {

namespace {

template <class Element>
std::span<const Element> elementsOf(const qvArray* array, qvClass classCode) {
    if (array == nullptr || array->classCode() != classCode) {
        return {};
    }
    return array->elements<const Element>();
}

const FieldTable* fieldsOf(const qvArray* array) {
    return array != nullptr ? array->fields() : nullptr;
}

}  // namespace

qvClass Value::classCode() const {
    return array_ != nullptr ? array_->classCode() : qvClassDouble;
}

std::string_view Value::className() const {
    return nameOfClass(classCode());
}

std::span<const std::size_t> Value::dimensions() const {
    static constexpr std::array<std::size_t, 2> kNoRowsNoColumns{};
    return array_ != nullptr ? array_->dimensions() : kNoRowsNoColumns;
}

std::size_t Value::size() const {
    return array_ != nullptr ? array_->size() : 0;
}

std::span<const double> Value::numbers() const {
    return elementsOf<double>(array_, qvClassDouble);
}

std::span<const qvChar> Value::characters() const {
    return elementsOf<qvChar>(array_, qvClassChar);
}

std::string Value::text() const {
    const std::span<const qvChar> wide = characters();
    std::string narrow(wide.size(), '\0');
    std::ranges::transform(wide, narrow.begin(),
                           [](qvChar character) { return static_cast<char>(character & 0xff); });
    return narrow;
}

std::span<const unsigned char> Value::logicals() const {
    return elementsOf<unsigned char>(array_, qvClassLogical);
}

std::size_t Value::fieldCount() const {
    const FieldTable* const fields = fieldsOf(array_);
    return fields != nullptr ? fields->size() : 0;
}

std::string_view Value::fieldName(std::size_t index) const {
    return array_->fields()->name(index);
}

std::optional<std::size_t> Value::fieldIndex(std::string_view name) const {
    const FieldTable* const fields = fieldsOf(array_);
    return fields != nullptr ? fields->find(name) : std::nullopt;
}

Value Value::field(std::size_t element, std::size_t index) const {
    return element < size() && index < fieldCount() ? Value(array_->place(element, index))
                                                    : Value();
}

Value Value::field(std::size_t element, std::string_view name) const {
    const std::optional<std::size_t> index = fieldIndex(name);
    return index ? field(element, *index) : Value();
}

Value Value::cell(std::size_t index) const {
    return classCode() == qvClassCell && index < size() ? Value(array_->places()[index]) : Value();
}

}  // namespace zephra
