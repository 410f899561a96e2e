// Reads that end, whatever the file.
#pragma once

#include <string>

#include "zephra/host/call_result.h"

#include "support/bytes.h"

namespace veltrace::test {

/// One call of the module on a memory file, in a strict host that grants 512 blocks of at most
/// 1 MiB. The sound seeds need less than a tenth of either. The file is closed and gone afterwards,
/// and its modification time was the same as that of all others, so the next one has its name.
class BoundedRead {
public:
    explicit BoundedRead(const Bytes& content);

    [[nodiscard]] const zephra::CallResult& result() const { return result_; }
    /// Whether the host ran out of blocks.
    [[nodiscard]] bool wasCutShort() const;
    /// What the outcome has that is not stated, in words; empty when there is nothing. Stated are a
    /// sound value or an error, messages of `isStated`, no misuse of the host, and nothing left
    /// behind but the file's name when its format is not recognised.
    [[nodiscard]] std::string unstated() const;

private:
    [[nodiscard]] zephra::CallResult call(const Bytes& content);
    [[nodiscard]] bool mayLeaveArrays() const;
    [[nodiscard]] bool leftNothingUnstated() const;
    [[nodiscard]] std::string flawOfValue() const;

    std::string fileName_;
    std::size_t defaultFields_;
    zephra::CallResult result_;
};

/// For failure messages: the bytes in hexadecimal.
[[nodiscard]] std::string hexadecimal(const Bytes& content);

}  // namespace veltrace::test
