// The lines of a file, as an input stream of RapidJSON.
#pragma once

#include <cstddef>
#include <vector>

#include "descriptor.h"

namespace veltrace::cli {

/// An input stream of RapidJSON that ends, with NUL, at the end of a line. Keeps one block of the
/// file, however long its lines are. A read that fails throws std::system_error.
class RecordLines {
public:
    using Ch = char;

    explicit RecordLines(Descriptor file) : file_(std::move(file)) {}

    /// Whether any byte is left after the previous line.
    [[nodiscard]] bool hasLine() { return fill(); }
    /// Moves past the newline of this line; false when the file ends without one.
    [[nodiscard]] bool skipLine();

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    [[nodiscard]] Ch Peek();
    Ch Take();
    [[nodiscard]] std::size_t Tell() const { return position_; }
    // Required by the reader, but only called when it writes in place.
    static Ch* PutBegin() { return nullptr; }
    void Put(Ch /*c*/) {}
    void Flush() {}
    static std::size_t PutEnd(Ch* /*begin*/) { return 0; }
    // NOLINTEND(readability-identifier-naming)

private:
    /// Whether a byte is available; reads a block when none is.
    bool fill();

    Descriptor file_;
    std::vector<char> block_;
    std::size_t position_ = 0;  // in the block
};

}  // namespace veltrace::cli
