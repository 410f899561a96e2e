#include "array.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

namespace zephra {

namespace {

struct ClassRow {
    qvClass code;
    const char* name;
    std::size_t elementBytes;
};
constexpr ClassRow kClasses[] = {
    {qvClassCell, "cell", sizeof(qvArray*)},
    {qvClassStruct, "struct", sizeof(qvArray*)},
    {qvClassLogical, "logical", 1},
    {qvClassChar, "char", sizeof(qvChar)},
    {qvClassDouble, "double", sizeof(double)},
};

// Arrays up to this size share memory, because a result may contain millions of scalars and short
// strings; where the ends of heap blocks are checked, each array has a block of its own.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kMaxPooledBytes = 0;
#elif defined(__has_feature)
constexpr std::size_t kMaxPooledBytes = __has_feature(address_sanitizer) ? 0 : 256;
#else
constexpr std::size_t kMaxPooledBytes = 256;
#endif

ClassRow rowOf(qvClass code) {
    const auto* const row = std::ranges::find(kClasses, code, &ClassRow::code);
    return row != std::end(kClasses) ? *row : ClassRow{code, "", 0};
}

}  // namespace

const char* nameOfClass(qvClass classCode) {
    return rowOf(classCode).name;
}

void FreeArray::operator()(qvArray* array) const noexcept {
    delete array->fields();
    if (!array->isPooled_) {
        std::free(array);
    }
}

}  // namespace zephra

zephra::OwnedArray qvArray::create(qvClass classCode, qvComplexity complexity,
                                   zephra::Dimensions dimensions,
                                   std::unique_ptr<zephra::FieldTable> fields,
                                   std::size_t largestPayload, std::pmr::memory_resource* pool) {
    const std::size_t parts = complexity == qvComplex ? 2 : 1;
    std::size_t payload = 0;
    if (!zephra::multiply(dimensions, &payload) ||
        (fields != nullptr && __builtin_mul_overflow(payload, fields->size(), &payload)) ||
        __builtin_mul_overflow(payload, parts * zephra::rowOf(classCode).elementBytes, &payload) ||
        payload > largestPayload) {
        return nullptr;
    }
    const std::size_t header =
        sizeof(qvArray) + dimensions.size_bytes() + (fields != nullptr ? sizeof(void*) : 0);
    if (payload > std::numeric_limits<std::size_t>::max() - header) {
        return nullptr;
    }
    const std::size_t bytes = header + payload;
    const bool isPooled = pool != nullptr && bytes <= zephra::kMaxPooledBytes;
    // calloc clears no page that comes fresh from the system.
    void* const block =
        isPooled ? std::memset(pool->allocate(bytes), 0, bytes) : std::calloc(1, bytes);
    if (block == nullptr) {
        return nullptr;
    }
    auto* const array = new (block) qvArray(classCode, dimensions, isPooled);
    if (fields != nullptr) {
        *static_cast<zephra::FieldTable**>(array->data()) = fields.release();
    }
    return zephra::OwnedArray(array);
}

qvArray::qvArray(qvClass classCode, zephra::Dimensions dimensions, bool isPooled)
    : dimensionCount_(static_cast<std::uint8_t>(dimensions.size())),
      classCode_(static_cast<std::uint8_t>(classCode)),
      isPooled_(isPooled) {
    std::ranges::copy(dimensions, reinterpret_cast<std::size_t*>(this + 1));
}

std::span<qvArray*> qvArray::places() const {
    auto* const first = static_cast<qvArray**>(data());
    switch (classCode()) {
        case qvClassCell:
            return {first, size()};
        case qvClassStruct:
            return {first + 1, size() * fields()->size()};
        default:
            return {};
    }
}

bool qvArray::contains(const qvArray& other) const {
    if (this == &other) {
        return true;
    }
    // Spares the walk when a deep value is built from the outside: there each new array is empty.
    if (!hasStored_) {
        return false;
    }
    const qvArray* ancestor = other.link_;
    while (ancestor != nullptr && ancestor != this) {
        ancestor = ancestor->link_;
    }
    return ancestor != nullptr;
}

// An array that left needs no parent: the links are the queue of those still to be visited, so the
// depth to which arrays nest does not matter.
void qvArray::leaveCall(zephra::ArrayState state) {
    qvArray* last = this;
    link_ = nullptr;
    for (qvArray* array = this; array != nullptr; array = array->link_) {
        array->call_ = 0;
        array->state_ = state;
        for (qvArray* const stored : array->places()) {
            if (stored != nullptr) {
                stored->link_ = nullptr;
                last->link_ = stored;
                last = stored;
            }
        }
    }
}
