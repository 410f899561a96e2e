// The output of a run.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>

#include "descriptor.h"

namespace veltrace::cli {

/// The output cannot be opened, written or completed: `what()` is one sentence for the user, safe
/// for a terminal.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Nobody reads the output any more, which is not a failure of the run.
class OutputClosed : public OutputError {
public:
    using OutputError::OutputError;
};

/// A signal ended the run while nobody read the output.
class OutputInterrupted : public OutputError {
public:
    using OutputError::OutputError;
};

/// Standard output, or a file that appears when it is complete: it is written without a name, where
/// the file system supports that, or under another name beside its place, and is removed with this
/// object unless it was completed. An existing target that is not a regular file (/dev/null, a
/// FIFO) is written directly. Operations throw OutputError.
class OutputFile {
public:
    /// Standard output.
    OutputFile();
    /// Opens what will be the file `target`. Waits for the reader of a FIFO.
    explicit OutputFile(const std::string& target);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Writes all bytes, however long that takes. Once a signal has ended the run, throws
    /// OutputInterrupted after half a second without a reader. Throws OutputClosed when the reader
    /// has gone away.
    void write(std::string_view bytes);

    /// Completes the output: a file replaces `target` and gets its mode. Nothing can be written
    /// afterwards.
    void commit();

    /// As `commit`, but a file gets the name `target` with ".partial", and `target` stays as it
    /// was.
    void keepPartial();

private:
    [[nodiscard]] std::string_view nextPiece(std::string_view bytes) const;
    void openBeside();
    void giveName();
    void moveTo(const std::string& place);
    [[noreturn]] void fail(int error) const;

    std::string shown_;           // its name in messages
    std::string target_;          // without links; empty when it is written directly
    std::string sibling_;         // its name until it is complete, if it has one
    std::optional<mode_t> mode_;  // of the file that it replaces
    Descriptor file_;
};

}  // namespace veltrace::cli
