#include "tag/tag_value.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "zephra/qv.h"

#include "tag/data_type.h"
#include "tag/large_page_allocator.h"

namespace veltrace::module {

namespace {

template <class Element>
Element elementAt(const std::byte* bytes, std::size_t index) {
    Element element;
    std::memcpy(&element, bytes + index * sizeof element, sizeof element);
    return element;
}

template <class Element>
void widen(const std::byte* bytes, std::size_t count, double* numbers) {
    for (std::size_t i = 0; i < count; ++i) {
        numbers[i] = static_cast<double>(elementAt<Element>(bytes, i));
    }
}

template <class Word>
void divide(const std::byte* bytes, std::size_t count, double* numbers) {
    const double nan = qvGetNaN();
    // Without a jump, so that the compiler divides several at a time.
    for (std::size_t i = 0; i < count; ++i) {
        const auto numerator = static_cast<double>(elementAt<Word>(bytes, 2 * i));
        const auto denominator = static_cast<double>(elementAt<Word>(bytes, 2 * i + 1));
        const double quotient = numerator / (denominator != 0 ? denominator : 1.0);
        numbers[i] = denominator != 0 ? quotient : nan;
    }
}

}  // namespace

TagValue::TagValue(const TagValue& other) : type_(other.type_), count_(other.count_) {
    if (other.isSet_) {
        set(other.bytes());
    }
}

TagValue::TagValue(TagValue&& other) noexcept
    : type_(other.type_),
      isSet_(std::exchange(other.isSet_, false)),
      count_(other.count_),
      inside_(other.inside_) {}

TagValue& TagValue::operator=(TagValue other) noexcept {
    std::swap(type_, other.type_);
    std::swap(isSet_, other.isSet_);
    std::swap(count_, other.count_);
    std::swap(inside_, other.inside_);
    return *this;
}

TagValue::~TagValue() {
    if (isOutside()) {
        LargePageAllocator<std::byte>().deallocate(outside(), byteSize());
    }
}

std::uint64_t TagValue::byteSize() const {
    if (type_ >= kElementSizes.size()) {
        return 0;
    }
    return std::uint64_t{count_} * kElementSizes[type_];
}

void TagValue::set(const std::byte* bytes) {
    const auto size = static_cast<std::size_t>(byteSize());
    if (size > kInsideBytes) {
        std::byte* const elements = LargePageAllocator<std::byte>().allocate(size);
        std::copy_n(bytes, size, elements);
        std::memcpy(inside_.data(), &elements, sizeof elements);
    } else {
        std::copy_n(bytes, size, inside_.data());
    }
    isSet_ = true;
}

/// Calls `visitor` with a number of the type that the numbers have; not at all when there are none.
template <class Visitor>
void TagValue::visitType(const Visitor& visitor) const {
    switch (DataType{type_}) {
        case DataType::byte:
        case DataType::undefined:
            return visitor(std::uint8_t{});
        case DataType::unsignedShort:
            return visitor(std::uint16_t{});
        case DataType::unsignedLong:
        case DataType::rational:
            return visitor(std::uint32_t{});
        case DataType::signedByte:
            return visitor(std::int8_t{});
        case DataType::signedShort:
            return visitor(std::int16_t{});
        case DataType::signedLong:
        case DataType::signedRational:
            return visitor(std::int32_t{});
        case DataType::singleFloat:
            return visitor(float{});
        case DataType::doubleFloat:
            return visitor(double{});
        case DataType::noType:
        case DataType::ascii:
        case DataType::ifd:
            return;
    }
}

std::size_t TagValue::rawCount() const {
    return isRational(DataType{type_}) ? 2 * outputCount() : outputCount();
}

void TagValue::copyRaw(double* numbers) const {
    visitType([&](auto number) { widen<decltype(number)>(bytes(), rawCount(), numbers); });
}

std::size_t TagValue::outputCount() const {
    const bool isText = DataType{type_} == DataType::ascii;
    return isSet_ && !isText ? count_ : 0;
}

void TagValue::copyOutput(double* numbers) const {
    if (isRational(DataType{type_})) {
        copyQuotients(numbers, outputCount());
    } else {
        copyRaw(numbers);
    }
}

void TagValue::copyQuotients(double* numbers, std::size_t count) const {
    if (DataType{type_} == DataType::rational) {
        divide<std::uint32_t>(bytes(), count, numbers);
    } else {
        divide<std::int32_t>(bytes(), count, numbers);
    }
}

double TagValue::firstOutput() const {
    double first = 0;
    if (isRational(DataType{type_})) {
        copyQuotients(&first, 1);
    } else {
        visitType([&](auto number) { widen<decltype(number)>(bytes(), 1, &first); });
    }
    return first;
}

bool TagValue::dividesByZero() const {
    const std::byte* const words = bytes();
    std::uint32_t found = 0;
    for (std::size_t i = 0; i < outputCount(); ++i) {
        found |= elementAt<std::uint32_t>(words, 2 * i + 1) == 0 ? 1U : 0U;
    }
    return found != 0;
}

std::string_view TagValue::text() const {
    if (!isSet_ || DataType{type_} != DataType::ascii) {
        return {};
    }
    return {reinterpret_cast<const char*>(bytes()), count_};
}

}  // namespace veltrace::module
