// The host value behind the opaque handle.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "zephra/qv.h"

#include "array_link.h"
#include "field_table.h"
#include "shape.h"

namespace zephra {

class ArrayMemory;

struct ArrayDeleter {
    void operator()(qvArray* array) const noexcept;
};

/// Owns one array, but not what is stored in it: every array has an owner of its own.
using ArrayPtr = std::unique_ptr<qvArray, ArrayDeleter>;

/// "double", "char", "cell", "struct" or "logical"; "" for any other code.
[[nodiscard]] const char* nameOfClass(qvClass classCode);

}  // namespace zephra

/// One array: this header, its dimensions and its elements in a single block, because a result may
/// hold millions of scalars and short strings.
struct qvArray final : public zephra::ArrayLink {
public:
    /// An array of `shape` with every element zero or empty. `fields` belongs to structure arrays.
    /// A small one is in `memory`, if there is any, which must outlive it. Null when the elements
    /// take more than `largestPayload` bytes or memory is exhausted.
    [[nodiscard]] static zephra::ArrayPtr create(zephra::ArrayMemory* memory, qvClass classCode,
                                                 qvComplexity complexity,
                                                 const zephra::Shape& shape,
                                                 std::unique_ptr<zephra::FieldTable> fields,
                                                 std::size_t largestPayload) noexcept;

    [[nodiscard]] qvClass classCode() const { return static_cast<qvClass>(classCode_); }
    [[nodiscard]] std::span<const std::size_t> dimensions() const {
        return {reinterpret_cast<const std::size_t*>(this + 1), dimensionCount_};
    }
    /// The product of the dimensions.
    [[nodiscard]] std::size_t size() const { return zephra::Shape::productOf(dimensions()); }

    /// The first element. A complex array has all real parts, then all imaginary parts.
    [[nodiscard]] void* data() const {
        return const_cast<std::size_t*>(dimensions().data() + dimensionCount_);
    }
    /// The elements as `Element`, which must be the element type of the array's class.
    template <class Element>
    [[nodiscard]] std::span<Element> elements() const {
        return {static_cast<Element*>(data()), size()};
    }

    /// Null for any class but a structure array.
    [[nodiscard]] zephra::FieldTable* fields() const {
        return classCode() == qvClassStruct ? *static_cast<zephra::FieldTable**>(data()) : nullptr;
    }
    /// The places for other arrays: the cells, or the fields of element 0, then those of element
    /// 1, and so on. Empty for any other class.
    [[nodiscard]] std::span<qvArray*> places() const {
        auto* const first = static_cast<qvArray**>(data());
        if (const zephra::FieldTable* const names = fields()) {
            return {first + 1, size() * names->size()};
        }
        return {first, classCode() == qvClassCell ? size() : 0};
    }

    /// The number of the running call that this array belongs to; 0 once it is part of a result.
    [[nodiscard]] std::uint64_t call() const { return call_; }
    void setCall(std::uint64_t call) { call_ = call & kCallMask; }
    /// True for an argument of the call, which the module may only read.
    [[nodiscard]] bool isArgument() const { return isArgument_ != 0; }
    void setArgument() { isArgument_ = 1; }

    /// The array that this one is stored in; null when it is stored nowhere.
    [[nodiscard]] const qvArray* parent() const { return parent_; }
    /// Puts `value`, which is stored nowhere, into `place`, an empty one of `places()`.
    void store(qvArray*& place, qvArray& value) {
        place = &value;
        value.parent_ = this;
        hasStored_ = 1;
    }
    /// True when `other` is this array or is stored below it, at any depth.
    [[nodiscard]] bool holds(const qvArray& other) const {
        // Most values are filled before they are stored, or never hold anything: no walk for those.
        return this == &other || (hasStored_ != 0 && isAncestorOf(other));
    }

private:
    friend zephra::ArrayDeleter;
    qvArray(qvClass classCode, const zephra::Shape& shape, bool isShared)
        : dimensionCount_(static_cast<std::uint8_t>(shape.dimensions().size())),
          classCode_(static_cast<unsigned>(classCode) & 0xF),
          isShared_(isShared ? 1 : 0) {
        auto* const dimensions = reinterpret_cast<std::size_t*>(this + 1);
        dimensions[0] = shape.dimensions()[0];
        dimensions[1] = shape.dimensions()[1];
        if (dimensionCount_ > 2) {
            std::ranges::copy(shape.dimensions(), dimensions);
        }
    }
    ~qvArray();
    [[nodiscard]] bool isAncestorOf(const qvArray& other) const;

    static constexpr std::uint64_t kCallMask = (std::uint64_t{1} << 48) - 1;

    // Behind this header: the dimensions, then in a structure array the address of its fields,
    // which it owns, then the elements.
    const qvArray* parent_ = nullptr;
    std::uint64_t call_ : 48 = 0;
    std::uint64_t dimensionCount_ : 8;
    std::uint64_t classCode_ : 4;
    std::uint64_t isArgument_ : 1 = 0;
    std::uint64_t hasStored_ : 1 = 0;  // something was stored in it, at some time
    std::uint64_t isShared_ : 1;       // it is in memory that it shares with others
};
