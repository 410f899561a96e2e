// Where the data of a run goes.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>

#include "descriptor.h"

namespace veltrace::cli {

/// That the output cannot be opened, written or completed: `what()` is one sentence for the user,
/// safe for a terminal.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// That nobody reads the output any more, which is no failure of the run.
class OutputClosed : public OutputError {
public:
    using OutputError::OutputError;
};

/// That a signal has ended the run while nobody read the output.
class OutputInterrupted : public OutputError {
public:
    using OutputError::OutputError;
};

/// Standard output, or a file that nobody sees before it is whole: it is written without a name,
/// where the file system can, or under another name beside its place, and is gone with this object
/// unless it was completed. What exists and is no regular file (/dev/null, a FIFO) is written
/// directly. Operations throw OutputError.
class OutputFile {
public:
    /// Standard output.
    OutputFile();
    /// Opens what will be the file `target`. Waits for the reader of a FIFO.
    explicit OutputFile(const std::string& target);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Writes all of it, however long that takes unless a signal ends the run: then a reader that
    /// takes nothing for half a second is left alone, with OutputInterrupted. Throws OutputClosed
    /// when there is no reader any more.
    void write(std::string_view bytes);

    /// Completes the output: a file takes the place of `target`, and its mode. Nothing can be
    /// written afterwards.
    void commit();

    /// As `commit`, but a file takes its place under the name `target` and ".partial", and `target`
    /// stays as it was.
    void keepPartial();

private:
    [[nodiscard]] std::string_view nextPiece(std::string_view bytes) const;
    void openBeside();
    void giveName();
    void moveTo(const std::string& place);
    [[noreturn]] void fail(int error) const;

    std::string shown_;           // what messages call it
    std::string target_;          // no link; empty when it is written directly
    std::string sibling_;         // its name until it is whole, if it has one
    std::optional<mode_t> mode_;  // of the file whose place it takes
    Descriptor file_;
};

}  // namespace veltrace::cli
