// Reads that end, whatever the file.
#pragma once

#include <string>

#include "zephra/host/host.h"

#include "support/bytes.h"
#include "support/memory_file.h"

namespace veltrace::test {

/// One call of the module on a memory file, in a strict host that bounds its blocks.
class BoundedRead {
public:
    /// The host grants 512 blocks of at most 1 MiB. The sound seeds need less than a tenth of
    /// either. The file is closed and gone afterwards, and its modification time was the same as
    /// that of all others, so the next one has its name.
    explicit BoundedRead(const Bytes& content);
    /// On a file that the caller keeps, which has this content.
    BoundedRead(const MemoryFile& file, const Bytes& content, const zephra::Settings& settings);

    [[nodiscard]] const zephra::CallResult& result() const { return result_; }
    /// Whether the host ran out of blocks.
    [[nodiscard]] bool wasCutShort() const;
    /// What the outcome has that is not stated, in words; empty when there is nothing. Stated are a
    /// sound value or an error, messages of `isStated`, no misuse of the host, and nothing left
    /// behind but the file's name when its format is not recognised.
    [[nodiscard]] std::string unstated() const;

private:
    [[nodiscard]] zephra::CallResult call() const;
    [[nodiscard]] bool leftNothingUnstated() const;
    [[nodiscard]] std::string flawOfValue() const;

    zephra::Settings settings_;
    std::string fileName_;
    std::size_t defaultFields_;
    // An Exif directory of a TIFF file has no fields of the default names. A tag of such a name
    // makes an array all the same, which finds no place in the output; and the directory may itself
    // be in one that a later entry replaced, so that the output does not show it.
    bool mayLeaveArrays_;
    zephra::CallResult result_;
};

/// For failure messages: the bytes in hexadecimal.
[[nodiscard]] std::string hexadecimal(const Bytes& content);

}  // namespace veltrace::test
