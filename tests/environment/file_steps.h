// Between the module and its files: what it asks of them, one step after the other.
#pragma once

#include <cstddef>
#include <ctime>
#include <functional>
#include <string_view>

namespace veltrace::test {

/// A step is one call of the C library that opens, asks, reads, moves or closes a file.
enum class Step { open, status, read, move, tell, close };

/// While one lives, `before` is called before each step of this thread, with its number from 0 on;
/// steps inside `before` do not count. Streams that are opened meanwhile keep nothing in buffers,
/// so that each read finds the file as it is then.
class FileSteps {
public:
    explicit FileSteps(std::function<void(std::size_t number, Step step)> before);
    FileSteps(const FileSteps&) = delete;
    FileSteps& operator=(const FileSteps&) = delete;
    ~FileSteps();

    /// The number of steps so far.
    [[nodiscard]] std::size_t taken() const { return taken_; }

    /// To be called where a step is about to be taken.
    static void take(Step step);
    [[nodiscard]] static bool isWatching();

private:
    std::function<void(std::size_t, Step)> before_;
    std::size_t taken_ = 0;
};

/// While one lives, every file was last modified at this time, whether the file system could hold
/// it or not.
class ModifiedAt {
public:
    /// Seconds since 1970-01-01 00:00:00 UTC.
    explicit ModifiedAt(std::time_t time);
    ModifiedAt(const ModifiedAt&) = delete;
    ModifiedAt& operator=(const ModifiedAt&) = delete;
    ~ModifiedAt();
};

}  // namespace veltrace::test
