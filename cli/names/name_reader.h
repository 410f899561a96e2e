// Extracts names from a stream of bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "descriptor.h"

namespace veltrace::cli {

/// A longer name means that a list has another terminator than expected.
inline constexpr std::size_t kMaxNameSize = std::size_t{1} << 20;

/// Reads names, any bytes, each followed by the terminator, from a descriptor, and never waits for
/// it. Keeps at most one block and one name.
class NameReader {
public:
    /// `source` is the name of the stream in messages, made visible.
    NameReader(Descriptor descriptor, char terminator, std::string source)
        : descriptor_(std::move(descriptor)), terminator_(terminator), source_(std::move(source)) {}

    /// The next complete name of the bytes read so far, perhaps an empty one; false without one.
    /// Throws NamesError when it is longer than `kMaxNameSize`.
    [[nodiscard]] bool take(std::string& name);

    enum class Read { some, later, end };

    /// Reads a block, when `take` has no name left. Throws NamesError when that fails, and when the
    /// bytes read before are too many for a name.
    [[nodiscard]] Read read();

    /// The bytes after the last terminator.
    [[nodiscard]] std::string_view rest() const { return std::string_view(bytes_).substr(taken_); }

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

private:
    [[nodiscard]] bool isReadable() const;
    void checkLength(std::size_t bytes) const;
    [[noreturn]] void fail(int error) const;

    Descriptor descriptor_;
    char terminator_;
    std::string source_;
    std::string bytes_;
    std::size_t taken_ = 0;
    std::size_t searched_ = 0;  // no terminator stands between `taken_` and here
};

}  // namespace veltrace::cli
