// The host value behind the opaque handle.
#pragma once

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

class Call;

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
    /// Null when the elements take more than `largestPayload` bytes or memory is exhausted.
    [[nodiscard]] static zephra::ArrayPtr create(qvClass classCode, qvComplexity complexity,
                                                 const zephra::Shape& shape,
                                                 std::unique_ptr<zephra::FieldTable> fields,
                                                 std::size_t largestPayload) noexcept;

    [[nodiscard]] qvClass classCode() const { return classCode_; }
    [[nodiscard]] std::span<const std::size_t> dimensions() const;
    /// The product of the dimensions.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The first element. A complex array has all real parts, then all imaginary parts.
    [[nodiscard]] void* data() const;
    /// The elements as `Element`, which must be the element type of the array's class.
    template <class Element>
    [[nodiscard]] std::span<Element> elements() const {
        return {static_cast<Element*>(data()), size_};
    }

    /// Null for any class but a structure array.
    [[nodiscard]] const zephra::FieldTable* fields() const { return fields_.get(); }
    /// The places for other arrays: the cells, or the fields of element 0, then those of element
    /// 1, and so on. Empty for any other class.
    [[nodiscard]] std::span<qvArray*> places() const;

    /// The running call that this array belongs to; null once it is part of a result.
    [[nodiscard]] zephra::Call* call() const { return call_; }
    void setCall(zephra::Call* call) { call_ = call; }
    /// True for an argument of the call, which the module may only read.
    [[nodiscard]] bool isArgument() const { return isArgument_; }
    void setArgument() { isArgument_ = true; }

    /// The array that this one is stored in; null when it is stored nowhere.
    [[nodiscard]] const qvArray* parent() const { return parent_; }
    /// Puts `value`, which is stored nowhere, into `place`, an empty one of `places()`.
    void store(qvArray*& place, qvArray& value);
    /// True when `other` is this array or is stored below it, at any depth.
    [[nodiscard]] bool holds(const qvArray& other) const;

private:
    friend zephra::ArrayDeleter;
    qvArray(qvClass classCode, const zephra::Shape& shape,
            std::unique_ptr<zephra::FieldTable> fields);
    ~qvArray() = default;

    zephra::Call* call_ = nullptr;
    const qvArray* parent_ = nullptr;
    std::unique_ptr<zephra::FieldTable> fields_;
    std::size_t size_;
    std::uint16_t dimensionCount_;
    bool isArgument_ = false;
    bool hasStored_ = false;  // something was stored in it, at some time
    qvClass classCode_;
};
