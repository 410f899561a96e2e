#include "array.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace zephra {

namespace {

std::size_t bytesPerElement(qvClass classCode, qvComplexity complexity) {
    const std::size_t parts = complexity == qvComplex ? 2 : 1;
    switch (classCode) {
        case qvClassCell:
        case qvClassStruct:
            return sizeof(qvArray*);
        case qvClassLogical:
            return parts;
        case qvClassChar:
            return sizeof(qvChar) * parts;
        case qvClassDouble:
            return sizeof(double) * parts;
    }
    return 0;
}

}  // namespace

const char* nameOfClass(qvClass classCode) {
    switch (classCode) {
        case qvClassCell:
            return "cell";
        case qvClassStruct:
            return "struct";
        case qvClassLogical:
            return "logical";
        case qvClassChar:
            return "char";
        case qvClassDouble:
            return "double";
    }
    return "";
}

void ArrayDeleter::operator()(qvArray* array) const noexcept {
    array->~qvArray();
    std::free(array);
}

}  // namespace zephra

static_assert(sizeof(qvArray) % alignof(double) == 0);

zephra::ArrayPtr qvArray::create(qvClass classCode, qvComplexity complexity,
                                 const zephra::Shape& shape,
                                 std::unique_ptr<zephra::FieldTable> fields,
                                 std::size_t largestPayload) noexcept {
    std::size_t payload = zephra::bytesPerElement(classCode, complexity);
    if (__builtin_mul_overflow(payload, fields ? fields->size() : 1, &payload) ||
        __builtin_mul_overflow(payload, shape.count(), &payload) || payload > largestPayload) {
        return nullptr;
    }
    const std::size_t header = sizeof(qvArray) + shape.dimensions().size_bytes();
    if (payload > std::numeric_limits<std::size_t>::max() - header) {
        return nullptr;
    }
    void* const memory = std::calloc(1, header + payload);
    if (memory == nullptr) {
        return nullptr;
    }
    return zephra::ArrayPtr(new (memory) qvArray(classCode, shape, std::move(fields)));
}

qvArray::qvArray(qvClass classCode, const zephra::Shape& shape,
                 std::unique_ptr<zephra::FieldTable> fields)
    : fields_(std::move(fields)),
      size_(shape.count()),
      dimensionCount_(static_cast<std::uint16_t>(shape.dimensions().size())),
      classCode_(classCode) {
    std::ranges::copy(shape.dimensions(), reinterpret_cast<std::size_t*>(this + 1));
}

std::span<const std::size_t> qvArray::dimensions() const {
    return {reinterpret_cast<const std::size_t*>(this + 1), dimensionCount_};
}

void* qvArray::data() const {
    return const_cast<std::size_t*>(dimensions().data() + dimensionCount_);
}

std::span<qvArray*> qvArray::places() const {
    auto* const first = static_cast<qvArray**>(data());
    if (classCode_ == qvClassCell) {
        return {first, size_};
    }
    return {first, fields_ ? size_ * fields_->size() : 0};
}

void qvArray::store(qvArray*& place, qvArray& value) {
    place = &value;
    value.parent_ = this;
    hasStored_ = true;
}

bool qvArray::holds(const qvArray& other) const {
    if (this == &other) {
        return true;
    }
    // Most values are filled before they are stored, or never hold anything: no walk for those.
    if (!hasStored_) {
        return false;
    }
    const qvArray* ancestor = other.parent_;
    while (ancestor != nullptr && ancestor != this) {
        ancestor = ancestor->parent_;
    }
    return ancestor != nullptr;
}
