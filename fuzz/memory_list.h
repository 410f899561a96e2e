// Files and pipes for lists of names, without a file system.
#pragma once

#include <string>
#include <string_view>

#include "descriptor.h"

namespace veltrace::fuzz {

/// A file in memory that is made once and filled anew for each input.
class MemoryList {
public:
    MemoryList();

    void fill(std::string_view content);
    /// A path that opens it from its start.
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    cli::Descriptor file_;
    std::string path_;
};

/// A pipe whose reading end has a path.
class PipedList {
public:
    PipedList();

    /// At most 64 KiB, or nobody would take the rest.
    void write(std::string_view piece);
    void close() { writing_ = cli::Descriptor(); }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    cli::Descriptor reading_;
    cli::Descriptor writing_;
    std::string path_;
};

}  // namespace veltrace::fuzz
