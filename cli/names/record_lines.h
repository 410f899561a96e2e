// Lines of a file as RapidJSON reads them.
#pragma once

#include <cstddef>
#include <vector>

#include "descriptor.h"

namespace veltrace::cli {

/// An input stream of RapidJSON that ends, with NUL, at the end of a line. Holds one block of the
/// file, however long its lines are. A read that fails throws std::system_error.
class RecordLines {
public:
    using Ch = char;

    explicit RecordLines(Descriptor file) : file_(std::move(file)) {}

    /// Whether there is any byte left, behind the line before.
    [[nodiscard]] bool hasLine() { return fill(); }
    /// Goes behind the newline of this line; false when the file ends without one.
    [[nodiscard]] bool skipLine();

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    [[nodiscard]] Ch Peek();
    Ch Take();
    [[nodiscard]] std::size_t Tell() const { return position_; }
    // A reader that does not write in place asks for these without calling them.
    static Ch* PutBegin() { return nullptr; }
    void Put(Ch /*c*/) {}
    void Flush() {}
    static std::size_t PutEnd(Ch* /*begin*/) { return 0; }
    // NOLINTEND(readability-identifier-naming)

private:
    /// Whether a byte is at hand; reads a block when none is.
    bool fill();

    Descriptor file_;
    std::vector<char> block_;
    std::size_t position_ = 0;  // in the block
};

}  // namespace veltrace::cli
