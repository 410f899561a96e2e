// Names that have a record from an earlier run.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "names/name_hash.h"

namespace veltrace::cli {

/// The names of all records in an output of the format ndjson. Takes 16 bytes of memory for each.
class RecordedNames {
public:
    /// Reads the file `path`, each line up to its name ("path", or "path_b64" in base64). A last
    /// line without a newline is incomplete and ignored. Throws NamesError when the file cannot be
    /// read or another line is not a record.
    explicit RecordedNames(const std::string& path);

    [[nodiscard]] bool contains(std::string_view name) const;

private:
    std::vector<NameHash> hashes_;  // ascending
};

}  // namespace veltrace::cli
