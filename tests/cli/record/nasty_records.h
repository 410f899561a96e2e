// Records that JSON readers often misread.
#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "made_values.h"
#include "record/json_record.h"
#include "render/json_renderer.h"

namespace veltrace::cli {

inline RenderOptions ndjson() {
    RenderOptions options;
    options.format = Format::ndjson;
    return options;
}

/// The line of a file with this name and one directory with the field "X".
inline std::string lineWith(const std::string& path, const Make& make) {
    const zephra::CallResult result = called(structures({{{"X", make}}}));
    Record record{0, path, {}};
    record.outcome.rendering = JsonRenderer(ndjson()).render(result.output());
    std::string line;
    JsonRecordWriter(ndjson()).record(record, line);
    return line;
}

/// Finite numbers at the limits of readers.
inline const std::vector<double>& nastyNumbers() {
    using Limits = std::numeric_limits<double>;
    static const std::vector<double> numbers{0.0,
                                             -0.0,
                                             1.0 / 3.0,
                                             0x1p53 - 1,
                                             -0x1p53,
                                             0x1p53 + 2,
                                             1e16,
                                             0x1p63,
                                             -0x1p63,
                                             0x1p64,
                                             1e22,
                                             1e23,
                                             Limits::max(),
                                             Limits::lowest(),
                                             Limits::min(),
                                             Limits::denorm_min(),
                                             0x1.0000000000001p-1022,
                                             123456.789e-200,
                                             5e-05};
    return numbers;
}

/// Texts of bytes, UTF-8 or not.
inline std::vector<std::string> nastyTexts() {
    std::string everyByte;
    for (int code = 0; code < 256; ++code) {
        everyByte += static_cast<char>(code);
    }
    return {"",
            everyByte,
            everyByte.substr(0, 128),
            std::string("\0\0kiln\0", 7),
            "\"\\/\b\f\n\r\t\x1b[31m\x7f",
            "\u0080\u0085\u009f\u00a0\u00ff\u2028\u2029\ufeff\ufffd\uffff\U0001F4F7\U0010FFFF",
            "\\uD800 \\u0000 \\",
            "\xed\xa0\x80",
            "\xc0\x80",
            "</script>",
            "%n%n"};
}

}  // namespace veltrace::cli
