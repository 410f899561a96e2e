#include "array.h"

#include <limits>
#include <new>

#include "array_memory.h"

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

}  // namespace zephra

qvArray* qvArray::create(zephra::ArrayMemory& memory, qvClass classCode, qvComplexity complexity,
                         zephra::Dimensions dimensions, zephra::FieldTable* fields,
                         std::size_t largestPayload) noexcept {
    std::size_t payload = 0;
    if (!zephra::multiply(dimensions, &payload) ||
        (fields != nullptr && __builtin_mul_overflow(payload, fields->size(), &payload)) ||
        __builtin_mul_overflow(payload, zephra::bytesPerElement(classCode, complexity), &payload) ||
        payload > largestPayload) {
        return nullptr;
    }
    const std::size_t header =
        sizeof(qvArray) + dimensions.size_bytes() + (fields != nullptr ? sizeof(void*) : 0);
    if (payload > std::numeric_limits<std::size_t>::max() - header) {
        return nullptr;
    }
    void* const block = memory.allocate(header + payload);
    if (block == nullptr) {
        return nullptr;
    }
    auto* const array = new (block) qvArray(classCode, dimensions);
    if (fields != nullptr) {
        *static_cast<zephra::FieldTable**>(array->data()) = fields;
    }
    return array;
}

bool qvArray::isAncestorOf(const qvArray& other) const {
    const qvArray* ancestor = other.link_;
    while (ancestor != nullptr && ancestor != this) {
        ancestor = ancestor->link_;
    }
    return ancestor != nullptr;
}

// An array that left needs no parent: the links are the queue of those still to be looked at, so
// the depth to which arrays nest does not matter.
std::size_t qvArray::leaveCall(bool asResult) {
    std::size_t count = 0;
    qvArray* last = this;
    link_ = nullptr;
    for (qvArray* array = this; array != nullptr; array = array->link_) {
        ++count;
        array->call_ = 0;
        array->isResult_ = asResult ? 1 : 0;
        for (qvArray* const stored : array->places()) {
            if (stored != nullptr) {
                stored->link_ = nullptr;
                last->link_ = stored;
                last = stored;
            }
        }
    }
    return count;
}
