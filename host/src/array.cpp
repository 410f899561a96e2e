#include "array.h"

#include <cstdlib>
#include <limits>
#include <new>

#include "array_memory.h"
#include "huge_pages.h"

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
    const bool isShared = array->isShared_ != 0;
    array->~qvArray();
    if (!isShared) {
        std::free(array);
    }
}

}  // namespace zephra

static_assert(sizeof(qvArray) % alignof(double) == 0);

zephra::ArrayPtr qvArray::create(zephra::ArrayMemory* memory, qvClass classCode,
                                 qvComplexity complexity, const zephra::Shape& shape,
                                 std::unique_ptr<zephra::FieldTable> fields,
                                 std::size_t largestPayload) noexcept {
    std::size_t payload = zephra::bytesPerElement(classCode, complexity);
    if (__builtin_mul_overflow(payload, fields ? fields->size() : 1, &payload) ||
        __builtin_mul_overflow(payload, shape.count(), &payload) || payload > largestPayload) {
        return nullptr;
    }
    const std::size_t header =
        sizeof(qvArray) + shape.dimensions().size_bytes() + (fields ? sizeof(void*) : 0);
    if (payload > std::numeric_limits<std::size_t>::max() - header) {
        return nullptr;
    }
    const std::size_t size = header + payload;
    const bool isShared = memory != nullptr && size <= zephra::ArrayMemory::kLargestBlock;
    void* const block = isShared ? memory->allocate(size) : std::calloc(1, size);
    if (block == nullptr) {
        return nullptr;
    }
    if (!isShared) {
        zephra::adviseHugePages(block, size);
    }
    zephra::ArrayPtr array(new (block) qvArray(classCode, shape, isShared));
    if (fields) {
        *static_cast<zephra::FieldTable**>(array->data()) = fields.release();
    }
    return array;
}

qvArray::~qvArray() {
    delete fields();
}

bool qvArray::isAncestorOf(const qvArray& other) const {
    const qvArray* ancestor = other.parent_;
    while (ancestor != nullptr && ancestor != this) {
        ancestor = ancestor->parent_;
    }
    return ancestor != nullptr;
}
