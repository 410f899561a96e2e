// What a record looks like.
#pragma once

#include <string_view>

namespace veltrace::cli {

/// The JSON Schema (draft 2020-12) of the records that `JsonRecordWriter` writes, as text with a
/// newline at its end.
[[nodiscard]] std::string_view recordSchema();

}  // namespace veltrace::cli
