// One call in which something is refused, and what must hold of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "zephra/host/host.h"

#include "faults/injection.h"
#include "faults/reader_watch.h"
#include "faults/scenarios.h"
#include "support/memory_file.h"

namespace veltrace::test {

/// A scenario with its file in place.
class Prepared {
public:
    explicit Prepared(const Scenario& scenario);

    [[nodiscard]] const std::vector<zephra::Argument>& arguments() const { return arguments_; }
    /// The name that the module is called with; empty when it is called with anything else.
    [[nodiscard]] std::string fileName() const;
    /// Number of fields that every directory of images in it has.
    [[nodiscard]] std::size_t defaultFields() const { return defaultFields_; }

private:
    std::optional<MemoryFile> file_;
    std::vector<zephra::Argument> arguments_;
    std::size_t defaultFields_;
};

/// A strict host that grants so few blocks that every read ends.
[[nodiscard]] zephra::Settings boundedHost();

/// One call. What it leaves behind is there until `cleanUp`.
class FaultyCall {
public:
    explicit FaultyCall(const Prepared& prepared, const Fault& fault = {},
                        const zephra::Settings& settings = boundedHost());
    FaultyCall(const FaultyCall&) = delete;
    FaultyCall& operator=(const FaultyCall&) = delete;
    ~FaultyCall();

    /// Nothing when the host itself ran out of memory, which ends `Host::call` by std::bad_alloc.
    [[nodiscard]] const std::optional<zephra::CallResult>& result() const { return result_; }
    /// Warnings in order, then the error, if there is one.
    [[nodiscard]] std::vector<zephra::Message> messages() const;
    /// Requests of the kinds of the fault, and how many of them were refused.
    [[nodiscard]] std::uint64_t asked() const { return asked_; }
    [[nodiscard]] std::uint64_t refused() const { return refused_; }
    /// Whether the module has left its reader, with the open file, to the host.
    [[nodiscard]] bool leftReader() const { return leftReader_; }

    /// What the outcome has that is not stated, in words; empty when there is nothing. `usual` is
    /// the outcome of the same call when nothing is refused.
    [[nodiscard]] std::string unstated(const FaultyCall& usual) const;
    /// In what the outcome differs from that of another call; empty when it does not.
    [[nodiscard]] std::string differenceFrom(const FaultyCall& other) const;

    /// Destroys the result and the reader that was left. Tells what the call has taken from the
    /// system and not given back all the same; empty when there is nothing.
    [[nodiscard]] std::string cleanUp();

private:
    [[nodiscard]] std::string flawOfMessages() const;
    [[nodiscard]] std::string flawOfValue(const FaultyCall& usual) const;
    [[nodiscard]] std::size_t mostEmptied() const;
    [[nodiscard]] std::string flawOfReader() const;
    [[nodiscard]] std::string flawOfLeftovers(const FaultyCall& usual) const;
    [[nodiscard]] bool hasCause(const zephra::Message& error) const;
    /// Whether any of these was.
    [[nodiscard]] bool wasRefused(Request kinds) const { return contains(refusedKinds_, kinds); }
    /// By the system or by the host.
    [[nodiscard]] bool memoryWasRefused() const;

    std::string fileName_;
    std::size_t defaultFields_;
    Fault fault_;
    zephra::Settings settings_;
    std::size_t blocksBefore_ = 0;
    std::optional<zephra::CallResult> result_;
    std::uint64_t asked_ = 0;
    std::uint64_t refused_ = 0;
    Request refusedKinds_ = kNoRequest;
    bool triedToOpen_ = false;
    std::uint64_t strayCloses_ = 0;
    ReaderWatch watch_;
    bool leftReader_ = false;
};

}  // namespace veltrace::test
