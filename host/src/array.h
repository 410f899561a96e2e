// The host value behind the opaque handle.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "zephra/qv.h"

#include "dimensions.h"
#include "field_table.h"

namespace zephra {

class ArrayMemory;

/// "double", "char", "cell", "struct" or "logical"; "" for any other code.
[[nodiscard]] const char* nameOfClass(qvClass classCode);

}  // namespace zephra

/// One array: this header, its dimensions and its elements in a single block, because a result may
/// hold millions of scalars and short strings. It ends with the memory it is in.
struct qvArray final {
public:
    /// An array in `memory` with every element zero or empty. `fields` are those of a structure
    /// array, which must outlive it, and null for any other class. Null when the elements are too
    /// many or take more than `largestPayload` bytes, or when memory is exhausted.
    [[nodiscard]] static qvArray* create(zephra::ArrayMemory& memory, qvClass classCode,
                                         qvComplexity complexity, zephra::Dimensions dimensions,
                                         zephra::FieldTable* fields,
                                         std::size_t largestPayload) noexcept;

    [[nodiscard]] qvClass classCode() const { return static_cast<qvClass>(classCode_); }
    [[nodiscard]] zephra::Dimensions dimensions() const {
        return {reinterpret_cast<const std::size_t*>(this + 1), dimensionCount_};
    }
    /// The product of the dimensions.
    [[nodiscard]] std::size_t size() const { return zephra::productOf(dimensions()); }

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

    /// The place of a field of element `element`, which a structure array must have; null when
    /// there is no such field.
    [[nodiscard]] qvArray** findPlace(std::size_t element, const char* fieldName) const {
        zephra::FieldTable& names = *fields();
        const std::size_t field = names.findNext(fieldName);
        return field != zephra::FieldTable::kNone
                   ? static_cast<qvArray**>(data()) + 1 + element * names.size() + field
                   : nullptr;
    }

    /// The number of the running call that this array belongs to; 0 once it left that call.
    [[nodiscard]] std::uint64_t call() const { return call_; }
    void setCall(std::uint64_t call) { call_ = call & kCallMask; }
    /// True for an argument of the call, which the module may only read.
    [[nodiscard]] bool isArgument() const { return isArgument_ != 0; }
    void setArgument() { isArgument_ = 1; }
    /// True once it left its call as part of the result.
    [[nodiscard]] bool isResult() const { return isResult_ != 0; }

    /// The array that this one is stored in; null when it is stored nowhere. Of no array that left
    /// its call.
    [[nodiscard]] const qvArray* parent() const { return link_; }
    /// Puts `value`, which is stored nowhere, into `place`, an empty one of `places()`.
    void store(qvArray*& place, qvArray& value) {
        place = &value;
        value.link_ = this;
        hasStored_ = 1;
    }
    /// True when `other` is this array or is stored below it, at any depth.
    [[nodiscard]] bool holds(const qvArray& other) const {
        // Most values are filled before they are stored, or never hold anything: no walk for those.
        return this == &other || (hasStored_ != 0 && isAncestorOf(other));
    }
    /// Takes this array and all that is stored below it out of their call, be it `asResult` or
    /// because another value replaced this one. Gives their number.
    std::size_t leaveCall(bool asResult);

private:
    qvArray(qvClass classCode, zephra::Dimensions dimensions)
        : dimensionCount_(static_cast<std::uint8_t>(dimensions.size())),
          classCode_(static_cast<unsigned>(classCode) & 0xF) {
        auto* const own = reinterpret_cast<std::size_t*>(this + 1);
        own[0] = dimensions[0];
        own[1] = dimensions[1];
        if (dimensions.size() > 2) {
            std::ranges::copy(dimensions, own);
        }
    }
    [[nodiscard]] bool isAncestorOf(const qvArray& other) const;

    static constexpr std::uint64_t kCallMask = (std::uint64_t{1} << 48) - 1;

    // Behind this header: the dimensions, then in a structure array the address of its fields, then
    // the elements.
    qvArray* link_ = nullptr;  // the parent; once it left its call, what left after it
    std::uint64_t call_ : 48 = 0;
    std::uint64_t dimensionCount_ : 8;
    std::uint64_t classCode_ : 4;
    std::uint64_t isArgument_ : 1 = 0;
    std::uint64_t hasStored_ : 1 = 0;  // something was stored in it, at some time
    std::uint64_t isResult_ : 1 = 0;
};

// There may be as many as a file has entries, and more.
static_assert(sizeof(qvArray) == 16);
static_assert(sizeof(qvArray) % alignof(double) == 0);
static_assert(std::is_trivially_destructible_v<qvArray>);
