// Sources of file names.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace veltrace::cli {

/// Names cannot be read: `what()` is one sentence for the user, safe for a terminal.
class NamesError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns names one by one, any bytes, in an order that does not depend on the run.
class NameSource {
public:
    virtual ~NameSource() = default;
    NameSource(const NameSource&) = delete;
    NameSource& operator=(const NameSource&) = delete;

    enum class State { name, later, end };

    /// Stores the next name in `name`. Returns `later` when it is not available yet: `descriptor()`
    /// becomes readable when it may be. Never waits. Throws NamesError.
    [[nodiscard]] virtual State next(std::string& name) = 0;

    /// The descriptor to wait for; -1 when `next` never returns `later`.
    [[nodiscard]] virtual int descriptor() const { return -1; }

protected:
    NameSource() = default;
};

}  // namespace veltrace::cli
