// A value on the heap that is copied with its owner.
#pragma once

#include <memory>
#include <utility>

namespace veltrace::module {

/// Owns a `Value`, or none, in the room of a pointer. Copying copies the value.
template <class Value>
class Owned {
public:
    Owned() = default;
    Owned(const Owned& other)
        : value_(other.value_ ? std::make_unique<Value>(*other.value_) : nullptr) {}
    Owned(Owned&& other) noexcept = default;
    Owned& operator=(Owned other) noexcept {
        value_ = std::move(other.value_);
        return *this;
    }
    ~Owned() = default;

    void set(Value value) { value_ = std::make_unique<Value>(std::move(value)); }

    /// Null when there is no value.
    [[nodiscard]] const Value* get() const { return value_.get(); }

private:
    std::unique_ptr<Value> value_;
};

}  // namespace veltrace::module
