// The line between reading files and printing what they hold.
#pragma once

#include <memory>
#include <ostream>
#include <string_view>

#include "zephra/host/call_result.h"

#include "options.h"

namespace veltrace::cli {

/// Prints the results of a run in one format. Called as begin, file for each file in order, end;
/// after each of them everything said so far is in the stream, and a result is never held on to. A
/// stream that fails is left in that state for the caller to find.
class OutputWriter {
public:
    virtual ~OutputWriter() = default;
    OutputWriter(const OutputWriter&) = delete;
    OutputWriter& operator=(const OutputWriter&) = delete;

    virtual void begin() = 0;
    virtual void file(std::string_view path, const zephra::CallResult& result) = 0;
    virtual void end() = 0;

protected:
    OutputWriter() = default;
};

/// The writer that `options` ask for, on `out`, which outlives it.
[[nodiscard]] std::unique_ptr<OutputWriter> makeOutputWriter(const Options& options,
                                                             std::ostream& out);

}  // namespace veltrace::cli
