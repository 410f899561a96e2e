// Choices that the bytes of an input make.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace veltrace::fuzz {

/// Takes values from the front of an input, which need not have any left: then they are 0 or empty.
/// `data` outlives it.
class Parameters {
public:
    Parameters(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) {}

    /// A number from 0 to `most`.
    std::size_t upTo(std::size_t most) {
        const std::uint64_t number = most <= 0xFF ? value<std::uint8_t>() : value<std::uint32_t>();
        return number % (most + 1);
    }

    template <class Choice, std::size_t Count>
    Choice oneOf(const Choice (&choices)[Count]) {
        return choices[upTo(Count - 1)];
    }

    bool flag() { return upTo(1) == 1; }

    /// A value with any bytes, such as a double.
    template <class Value>
    Value value() {
        const std::string_view taken = bytes(sizeof(Value));
        Value result{};
        std::memcpy(&result, taken.data(), taken.size());
        return result;
    }

    /// The next `size` bytes, or as many as there are.
    std::string_view bytes(std::size_t size) {
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    /// A text of at most `most` bytes, of any kind.
    std::string text(std::size_t most) { return std::string(bytes(upTo(most))); }

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    /// All that is left.
    std::string_view rest() { return bytes(rest_.size()); }

private:
    std::string_view rest_;
};

}  // namespace veltrace::fuzz
