// Calls in which something is made to fail.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "zephra/host/host.h"

#include "support/bytes.h"

namespace veltrace::test {

/// One call of the module.
struct Scenario {
    std::string name;
    std::optional<Bytes> file;  ///< what the file holds that the module is called with
    std::vector<zephra::Argument> arguments = {};  ///< of a call without a file
    /// Identifiers of its messages, without "ZEPHRA:veltrace:", as they come when nothing fails.
    /// The seeds of the sweeps do not know.
    std::optional<std::vector<std::string>> messages = std::nullopt;
};

/// For failure messages of tests.
void PrintTo(const Scenario& scenario, std::ostream* out);

/// The seeds of the sweeps in both byte orders, and what is not among them: wrong arguments and
/// names, files of no format, JPEG walks, links that lead nowhere, depth, length.
[[nodiscard]] const std::vector<Scenario>& scenarios();

}  // namespace veltrace::test
