// A file that has a name but no disk.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "support/bytes.h"

namespace veltrace::test {

/// Lives in memory; any function that takes a file name can open it, as often as it likes, while
/// this object lives.
class MemoryFile {
public:
    explicit MemoryFile(const Bytes& content);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    [[nodiscard]] const std::string& name() const { return name_; }
    /// Makes these bytes the whole content.
    void replace(const Bytes& content) const;
    /// Writes at a position, leaving a hole between the end of the file and it. Holes take no
    /// memory, so a file of several gigabytes costs nothing.
    void put(std::int64_t position, const Bytes& content) const;
    /// Seconds since 1970-01-01 00:00:00 UTC.
    void setModificationTime(std::time_t time) const;

private:
    int descriptor_;
    std::string name_;
};

}  // namespace veltrace::test
