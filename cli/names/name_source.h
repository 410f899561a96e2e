// Where names of files come from.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace veltrace::cli {

/// That names cannot be had: `what()` is one sentence for the user, safe for a terminal.
class NamesError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Names one after the other, any bytes, in an order that does not depend on the run.
class NameSource {
public:
    virtual ~NameSource() = default;
    NameSource(const NameSource&) = delete;
    NameSource& operator=(const NameSource&) = delete;

    enum class State { name, later, end };

    /// Gives the next name in `name`; `later` when it has not come yet: `descriptor()` is then
    /// readable when it is worth asking again. Never waits. Throws NamesError.
    [[nodiscard]] virtual State next(std::string& name) = 0;

    /// What to wait for; -1 when `next` never answers `later`.
    [[nodiscard]] virtual int descriptor() const { return -1; }

protected:
    NameSource() = default;
};

}  // namespace veltrace::cli
