// Takes names out of a stream of bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "descriptor.h"

namespace veltrace::cli {

/// A longer one is no name of a file but a list that was taken for another kind of list.
inline constexpr std::size_t kLongestName = std::size_t{1} << 20;

/// Names, any bytes, each with the terminator behind it, read from a descriptor without ever
/// waiting for it. Holds at most one block and one name.
class NameReader {
public:
    /// `source` is what messages call the stream, made visible.
    NameReader(Descriptor descriptor, char terminator, std::string source)
        : descriptor_(std::move(descriptor)), terminator_(terminator), source_(std::move(source)) {}

    /// The next name of what was read, perhaps an empty one; false when none is whole.
    /// Throws NamesError when it is longer than `kLongestName`.
    [[nodiscard]] bool take(std::string& name);

    enum class Read { some, later, end };

    /// Reads a block, when `take` has nothing left. Throws NamesError when that fails, and when
    /// what was read before is too long for a name.
    [[nodiscard]] Read read();

    /// What has no terminator behind it.
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
