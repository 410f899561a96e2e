// Tables of tags and of what the module reports for them.
#pragma once

#include <string>
#include <vector>

#include "zephra/host/call_result.h"
#include "zephra/host/value.h"

#include "support/tiff_builder.h"

namespace veltrace::test {

/// Numbers as `5`, `2x1 [5 6]` or `0x0 []`, in column order and with as many digits as they
/// need; texts as `'kiln\0\xE9'`; cells as `2x1 {'a' 'b'}`; structures as `1x1 struct`; `none` for
/// no value.
[[nodiscard]] std::string shown(zephra::Value value);

struct ShownRow {
    TiffDirectory directory;
    std::string fields;  ///< names with blanks between them
    std::string shown;   ///< as many values with "; " between them; `no field` for no such field
    std::vector<zephra::Message> messages = {};
};

/// Builds for each row a file of one directory, in every encoding, and reads it.
void expectShown(const std::vector<ShownRow>& rows);

/// The same for a JPEG file, whose directory has no fallbacks.
void expectShownInJpeg(const std::vector<ShownRow>& rows);

}  // namespace veltrace::test
