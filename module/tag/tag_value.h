// The value of a directory entry.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::module {

/// Elements of one data type as the file states them, in this computer's byte order. Numbers are
/// worked out when they are asked for: kept as doubles they would take up to eight times the room,
/// and most tags of most files have one small number. Copies are deep.
class TagValue {
public:
    /// No elements of no type.
    TagValue() = default;
    /// What an entry says of its value, which is not there yet.
    TagValue(std::uint16_t type, std::uint32_t count) : type_(type), count_(count) {}

    TagValue(const TagValue& other);
    TagValue(TagValue&& other) noexcept;
    TagValue& operator=(TagValue other) noexcept;
    ~TagValue();

    /// The type code of the entry, which need not be valid.
    [[nodiscard]] std::uint16_t type() const { return type_; }
    /// The number of elements that the entry states.
    [[nodiscard]] std::uint32_t count() const { return count_; }
    /// Bytes of all elements; 0 when the type is not valid.
    [[nodiscard]] std::uint64_t byteSize() const;

    /// Copies the elements from `bytes`, `byteSize()` of them. Once.
    void set(const std::byte* bytes);

    /// Number of numbers as decoded, two for a rational; 0 for texts and as long as nothing is set.
    [[nodiscard]] std::size_t rawCount() const;
    /// Writes them to `numbers`; numerators and denominators in file order.
    void copyRaw(double* numbers) const;

    /// Number of numbers as reported, one for a rational.
    [[nodiscard]] std::size_t outputCount() const;
    /// Writes them to `numbers`. A rational without denominator is the host's NaN.
    void copyOutput(double* numbers) const;
    /// The first of them, which must exist.
    [[nodiscard]] double firstOutput() const;
    /// Whether one of the rationals, which the elements must be, has the denominator 0.
    [[nodiscard]] bool dividesByZero() const;

    /// The bytes of an ASCII value, NULs included; empty for any other.
    [[nodiscard]] std::string_view text() const;

private:
    static constexpr std::size_t kInsideBytes = 8;  // any one element

    [[nodiscard]] bool isOutside() const { return isSet_ && byteSize() > kInsideBytes; }
    /// Of more elements than are kept inside.
    [[nodiscard]] std::byte* outside() const { return std::bit_cast<std::byte*>(inside_); }
    [[nodiscard]] const std::byte* bytes() const {
        return isOutside() ? outside() : inside_.data();
    }
    template <class Visitor>
    void visitType(const Visitor& visitor) const;
    void copyQuotients(double* numbers, std::size_t count) const;

    std::uint16_t type_ = 0;
    bool isSet_ = false;
    std::uint32_t count_ = 0;
    // The elements, or the address of the block that holds them.
    std::array<std::byte, kInsideBytes> inside_{};
};

}  // namespace veltrace::module
