// Changes of files that are made where they mean something.
#pragma once

#include <cstddef>
#include <span>

#include "mutation/random.h"
#include "mutation/tiff_map.h"

namespace veltrace::fuzz {

/// One change of one file. Every change leaves at most `maxSize` bytes, given no more than that.
class TiffMutation {
public:
    /// False when there is nothing of the kind to change in this file.
    using Change = bool (TiffMutation::*)();

    TiffMutation(Bytes bytes, std::size_t maxSize, Random& random);

    [[nodiscard]] const Bytes& bytes() const { return bytes_; }

    // Numbers of an entry.
    bool changeTag();
    bool changeType();
    bool changeCount();
    bool changeOffset();
    bool changeValue();
    // Where things are.
    /// Points an entry at a directory, or at the end; what is no pointer becomes one.
    bool pointEntry();
    bool pointNext();
    bool pointFirst();
    // Tables.
    bool changeEntryCount();
    bool duplicateEntry();
    bool swapEntries();
    bool removeEntry();
    /// Puts a copy of a directory at the end and makes an entry or a chain lead there.
    bool appendTable();
    // The file.
    bool flipByteOrder();
    bool grow();
    /// At a directory or inside one.
    bool truncate();
    /// Puts a segment in front of the first one; for JPEG files only.
    bool insertSegment();

    [[nodiscard]] static std::span<const Change> all();

private:
    [[nodiscard]] bool chooseTable();
    [[nodiscard]] bool chooseEntry();
    [[nodiscard]] std::uint64_t anyTarget();
    bool set(std::size_t position, std::size_t width, std::uint64_t number);
    bool makePointer(std::uint64_t offset);

    Bytes bytes_;
    std::size_t maxSize_;
    Random& random_;
    TiffMap map_;
    // The choice.
    Table table_{};
    std::size_t entry_ = 0;  // a position
};

/// A few changes of the bytes; the bytes as they are when nothing can be changed.
[[nodiscard]] Bytes mutated(Bytes bytes, std::size_t maxSize, Random& random);

}  // namespace veltrace::fuzz
