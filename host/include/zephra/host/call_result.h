// The result of one call of a module.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zephra/host/value.h"

namespace zephra {

/// A message of a module: its identifier, such as "ZEPHRA:veltrace:badFilename", and its text as
/// the module sent it, a trailing newline included.
struct Message {
    std::string identifier;
    std::string text;
    friend bool operator==(const Message&, const Message&) = default;
};

/// What a module left behind: neither freed nor reachable from its output when the call ended.
struct Leftovers {
    std::size_t blocks = 0;      ///< blocks from qvMalloc and qvArrayToString
    std::size_t blockBytes = 0;  ///< the sum of their sizes as requested
    std::size_t arrays = 0;      ///< arrays outside the output, without replaced ones
    friend bool operator==(const Leftovers&, const Leftovers&) = default;
};

/// What a module asked for during the call, granted or not.
struct Requests {
    std::uint64_t blocks = 0;  ///< blocks from qvMalloc and qvArrayToString
    std::uint64_t arrays = 0;  ///< `qvCreate…` calls
    friend bool operator==(const Requests&, const Requests&) = default;
};

/// The outcome of a call. Owns the output; everything else that the call made is already freed.
/// Move-only. A moved-from result may only be destroyed or assigned to.
class CallResult {
public:
    class State;  // private to the host

    explicit CallResult(std::unique_ptr<State> state) noexcept;
    CallResult(CallResult&& other) noexcept;
    CallResult& operator=(CallResult&& other) noexcept;
    ~CallResult();

    /// The first output, valid as long as this result; a null `Value` when the module set none or
    /// the call ended with an error.
    [[nodiscard]] Value output() const;

    /// Warnings in the order in which the module issued them.
    [[nodiscard]] const std::vector<Message>& warnings() const;

    /// The error that ended the call, if one did. An exception other than the host's own has the
    /// identifier "ZEPHRA:host:foreignException" and names its type where the type is known.
    [[nodiscard]] const std::optional<Message>& error() const;

    [[nodiscard]] const Leftovers& leftovers() const;

    [[nodiscard]] const Requests& requests() const;

    /// Misuse reported in strict mode, one sentence each, in order: a value stored twice, a foreign
    /// pointer, an index past the end, a wrong class of array. Always empty otherwise.
    [[nodiscard]] const std::vector<std::string>& misuses() const;

private:
    std::unique_ptr<State> state_;
};

}  // namespace zephra
