// The host value behind the opaque handle.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <span>
#include <type_traits>

#include "zephra/qv.h"

#include "dimensions.h"
#include "field_table.h"

namespace zephra {

/// "double", "char", "cell", "struct" or "logical"; "" for any other code.
[[nodiscard]] const char* nameOfClass(qvClass classCode);

/// Frees an array and its fields, but none of the arrays that are stored in it. The memory of a
/// pooled array is freed with its pool.
struct FreeArray {
    void operator()(qvArray* array) const noexcept;
};
using OwnedArray = std::unique_ptr<qvArray, FreeArray>;

enum class ArrayState : std::uint8_t {
    made,      ///< by the module
    argument,  ///< made by the host; the module may only read it
    replaced,  ///< removed from the place it was stored in; gone for the module
    returned,  ///< part of the output
};

}  // namespace zephra

/// One array: this header, its dimensions and its elements in a single block, because a result may
/// contain millions of scalars and short strings.
struct qvArray final {
public:
    /// An array with every element zero or empty. `fields` are those of a structure array, and null
    /// for any other class. A small array is made in `pool`, if there is one, which must outlive
    /// it. Null when the elements are too many or take more than `largestPayload` bytes, or when
    /// memory is exhausted; an exhausted pool throws std::bad_alloc.
    [[nodiscard]] static zephra::OwnedArray create(qvClass classCode, qvComplexity complexity,
                                                   zephra::Dimensions dimensions,
                                                   std::unique_ptr<zephra::FieldTable> fields,
                                                   std::size_t largestPayload,
                                                   std::pmr::memory_resource* pool = nullptr);

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
    [[nodiscard]] std::span<qvArray*> places() const;
    /// The place of field `field` of element `element`, both of which a structure array must have.
    [[nodiscard]] qvArray*& place(std::size_t element, std::size_t field) const {
        return static_cast<qvArray**>(data())[1 + element * fields()->size() + field];
    }

    /// The number of the call that this array was made for; 0 once it left that call.
    [[nodiscard]] std::uint32_t call() const { return call_; }
    [[nodiscard]] zephra::ArrayState state() const { return state_; }
    /// Makes this array, a new one, belong to a running call as `state`.
    void joinCall(std::uint32_t call, zephra::ArrayState state) {
        call_ = call;
        state_ = state;
    }

    /// The array that this one is stored in, if any. Only for arrays of a running call.
    [[nodiscard]] const qvArray* parent() const { return link_; }
    /// Puts `value`, which is stored nowhere, into `place`, an empty one of `places()`.
    void store(qvArray*& place, qvArray& value) {
        place = &value;
        value.link_ = this;
        hasStored_ = true;
    }
    /// True when `other` is this array or is stored below it, at any depth.
    [[nodiscard]] bool contains(const qvArray& other) const;
    /// Takes this array and all that is stored below it out of their call, as `state`.
    void leaveCall(zephra::ArrayState state);

private:
    friend struct zephra::FreeArray;

    qvArray(qvClass classCode, zephra::Dimensions dimensions, bool isPooled);

    // Behind this header: the dimensions, then in a structure array the address of its fields,
    // which it owns, then the elements.
    qvArray* link_ = nullptr;  // the parent; once it left its call, the array that left after it
    std::uint32_t call_ = 0;
    std::uint8_t dimensionCount_;
    std::uint8_t classCode_;
    zephra::ArrayState state_ = zephra::ArrayState::made;
    bool hasStored_ : 1 = false;  // something was stored in it, at some time
    bool isPooled_ : 1;
};

static_assert(sizeof(qvArray) == 16);
static_assert(sizeof(qvArray) % alignof(double) == 0);
static_assert(std::is_trivially_destructible_v<qvArray>);
