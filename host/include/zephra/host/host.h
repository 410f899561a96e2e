// The embedded host: calls a module and returns its output, its messages and what it left behind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <variant>

#include "zephra/host/call_result.h"
#include "zephra/qv.h"

namespace zephra {

/// The limits of one call.
struct Settings {
    /// Largest single block or array payload in bytes; a larger request gets NULL.
    std::size_t largestBlock = std::size_t{1} << 30;
    /// 1-based number of the block request of a call that gets NULL; 0: none. Every block that
    /// `qvMalloc` or `qvArrayToString` asks for counts.
    std::uint64_t failBlock = 0;
    /// 1-based number of the `qvCreate…` call of a call that gets NULL; 0: none.
    std::uint64_t failArray = 0;
    /// Number of block requests of a call that are granted, after which all get NULL; 0: no limit.
    /// A module that reads tables into blocks thus ends, whatever its input.
    std::uint64_t blockBudget = 0;
    /// The same for `qvCreate…` calls.
    std::uint64_t arrayBudget = 0;
    /// Reports misuse by the module: see `CallResult::misuses`.
    bool strict = false;
};

/// An empty (0 x 0) argument of any class.
struct EmptyArgument {
    qvClass classCode;
};

/// An argument of a call: bytes as a 1 x n char array, a number as a 1 x 1 double array, or an
/// empty array of a given class.
using Argument = std::variant<std::string, double, EmptyArgument>;

/// The entry point of a module, in the signature of `qvxFunction`.
using EntryPoint = std::function<void(int outputCount, qvArray* outputs[], int inputCount,
                                      const qvArray* inputs[])>;

/// A host that runs modules inside this process. Immutable after construction; one `Host` may
/// serve calls on any number of threads at once, and a module may be called from within a call.
class Host {
public:
    explicit Host(Settings settings = {});

    /// Calls `entryPoint` with `arguments`, asking for one output. Never throws for anything that
    /// a module does: an error it raises and any other exception that escapes it are part of the
    /// result. Throws std::bad_alloc only when the host's own bookkeeping runs out of memory.
    [[nodiscard]] CallResult call(const EntryPoint& entryPoint,
                                  std::span<const Argument> arguments) const;

private:
    Settings settings_;
};

}  // namespace zephra
